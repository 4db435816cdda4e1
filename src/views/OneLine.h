#pragma once

#include <QString>

namespace brindle {

/// The start of a name that somebody typed or pasted, control characters and line breaks as spaces. Short enough to be
/// measured at no cost, longer than anything that is shown of it.
QString oneLine(const QString& name);

}  // namespace brindle
