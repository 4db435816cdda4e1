#include "views/OneLine.h"

namespace brindle {

namespace {

/// More than these never fit; without the limit a name of megabytes would be laid out whole.
constexpr qsizetype mostCharacters = 400;

}  // namespace

QString oneLine(const QString& name) {
    QString line = name.left(mostCharacters);
    for (QChar& character : line) {
        if (character.category() == QChar::Other_Control || character == QChar::LineSeparator ||
            character == QChar::ParagraphSeparator)
            character = QChar::Space;
    }
    return line;
}

}  // namespace brindle
