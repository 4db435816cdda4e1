#include "views/RowText.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QString>
#include <QTextBoundaryFinder>
#include <QTextLayout>
#include <QTextOption>
#include <algorithm>
#include <optional>

#include "base/Unicode.h"
#include "platform/qt/QtText.h"
#include "views/Fonts.h"

namespace brindle {

namespace {

constexpr int maximumLines = 2;
constexpr std::size_t previewBytes = 1024;
/// How far the first word is looked for: nobody waits for megabytes of blanks at each repaint.
constexpr std::size_t searchedBytes = std::size_t{1} << 20;
constexpr qsizetype tabCells = 4;
constexpr QChar ellipsis = u'…';
constexpr QChar unprintable = u'·';

struct Preview {
    std::string_view text;
    bool isCut;
};

/// At most that many bytes of the text, cut between two characters.
std::string_view beginning(std::string_view text, std::size_t bytes) {
    if (text.size() <= bytes)
        return text;
    while (bytes > 0 && (static_cast<unsigned char>(text[bytes]) & 0xC0) == 0x80)
        --bytes;
    return text.substr(0, bytes);
}

Preview preview(std::string_view content) {
    const std::string_view searched = beginning(content, searchedBytes);
    const std::string_view trimmed = unicode::trimmed(searched);
    const std::string_view shown = beginning(trimmed, previewBytes);
    return {shown, shown.size() < trimmed.size() || searched.size() < content.size()};
}

bool isLineBreak(char16_t unit) {
    return (unit >= u'\n' && unit <= u'\r') || unit == 0x85 || unit == 0x2028 || unit == 0x2029;
}

bool isUnprintable(char16_t unit) {
    return unit < 0x20 || (unit >= 0x7F && unit < 0xA0) || unit == QChar::ObjectReplacementCharacter;
}

QString printable(std::string_view text) {
    QString shown = toQString(text);
    shown.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    for (QChar& unit : shown) {
        if (isLineBreak(unit.unicode()))
            unit = QChar::LineSeparator;
        else if (unit != u'\t' && isUnprintable(unit.unicode()))
            unit = unprintable;
    }
    return shown.replace(u'\t', QString(tabCells, u' '));
}

QTextOption option(const QString& text) {
    QTextOption made(Qt::AlignLeft | Qt::AlignAbsolute);
    made.setTextDirection(text.isRightToLeft() ? Qt::RightToLeft : Qt::LeftToRight);
    made.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    return made;
}

void trimEnd(QString& text) {
    while (!text.isEmpty() && text.back().isSpace())
        text.chop(1);
}

/// Without its last character and the white space that then ends it.
void shorten(QString& text) {
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    finder.toEnd();
    text.truncate(std::max<qsizetype>(0, finder.toPreviousBoundary()));
    trimEnd(text);
}

bool isMonospaced() {
    const QFontMetricsF metrics(textFont(TextStyle::entry));
    return metrics.horizontalAdvance(u'i') == metrics.horizontalAdvance(u'W');
}

/// How many ASCII characters fit on a line, as the layout itself decides it; 0 when they differ in width.
qsizetype columns(double width) {
    static double knownWidth = 0;
    static qsizetype known = 0;
    if (knownWidth == width)
        return known;
    knownWidth = width;
    QTextLayout layout(QString(previewBytes, u'x'), textFont(TextStyle::entry));
    layout.setTextOption(option(layout.text()));
    layout.beginLayout();
    QTextLine line = layout.createLine();
    line.setLineWidth(width);
    layout.endLayout();
    return known = isMonospaced() ? line.textLength() : 0;
}

/// None: only a layout can tell.
std::optional<int> asciiLineCount(std::string_view text, double width) {
    const qsizetype available = columns(width);
    qsizetype cells = 0;
    for (const char character : text) {
        const auto unit = static_cast<unsigned char>(character);
        if (unit >= 0x7F || available == 0)
            return std::nullopt;
        if (isLineBreak(unit))
            return maximumLines;
        cells += character == '\t' ? tabCells : 1;
        if (cells > available)
            return maximumLines;
    }
    return 1;
}

}  // namespace

RowText::RowText(std::string_view content, double width) {
    const Preview shown = preview(content);
    QString text = printable(shown.text);
    if (shown.isCut)
        text += ellipsis;
    layOut(text, width);
    if (layout_->lineCount() <= maximumLines)
        return;
    const QTextLine last = layout_->lineAt(maximumLines - 1);
    const QString before = text.left(last.textStart());
    QString line = text.mid(last.textStart(), last.textLength());
    trimEnd(line);
    layOut(before + line + ellipsis, width);
    while (layout_->lineCount() > maximumLines && !line.isEmpty()) {
        shorten(line);
        layOut(before + line + ellipsis, width);
    }
}

RowText::~RowText() = default;
RowText::RowText(RowText&&) noexcept = default;
RowText& RowText::operator=(RowText&&) noexcept = default;

void RowText::layOut(const QString& text, double width) {
    layout_ = std::make_unique<QTextLayout>(text, textFont(TextStyle::entry));
    layout_->setTextOption(option(text));
    layout_->beginLayout();
    for (int i = 0; i <= maximumLines; ++i) {
        QTextLine line = layout_->createLine();
        if (!line.isValid())
            break;
        line.setLineWidth(width);
        // A glyph of another font must not move the line.
        line.setPosition({0, i * lineHeight(TextStyle::entry) + baseline(TextStyle::entry) - line.ascent()});
    }
    layout_->endLayout();
}

int RowText::lineCount() const {
    return std::clamp(layout_->lineCount(), 1, maximumLines);
}

void RowText::draw(QPainter& painter, QPointF topLeft) const {
    for (int i = 0; i < std::min(layout_->lineCount(), maximumLines); ++i)
        layout_->lineAt(i).draw(&painter, topLeft);
}

int RowText::lineCount(std::string_view content, double width) {
    const auto counted = asciiLineCount(preview(content).text, width);
    return counted ? *counted : RowText(content, width).lineCount();
}

QString RowText::spoken(std::string_view content) {
    return printable(preview(content).text).replace(QChar::LineSeparator, u' ');
}

}  // namespace brindle
