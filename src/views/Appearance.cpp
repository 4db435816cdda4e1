#include "views/Appearance.h"

#include "platform/Platform.h"

namespace brindle {

ColorScheme schemeOf(AppTheme theme) {
    if (theme == AppTheme::system)
        return platform().colorSchemes().systemColorScheme();
    return theme == AppTheme::light ? ColorScheme::light : ColorScheme::dark;
}

ColorScheme schemeOf(std::string_view storedTheme) {
    return schemeOf(appThemeFromRawValue(storedTheme).value_or(AppTheme::dark));
}

}  // namespace brindle
