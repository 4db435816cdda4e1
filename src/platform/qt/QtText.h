#pragma once

#include <QString>
#include <string>
#include <string_view>

namespace brindle {

/// The one place where the program's UTF-8 and the toolkit's UTF-16 meet.
inline QString toQString(std::string_view utf8) {
    return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

inline std::string toUtf8(QStringView text) {
    return text.toUtf8().toStdString();
}

}  // namespace brindle
