#include "views/SettingsView.h"

#include <QPainter>
#include <algorithm>
#include <array>
#include <cstdint>
#include <functional>

#include "platform/qt/QtText.h"
#include "services/SettingsManager.h"
#include "views/AccessibleRole.h"
#include "views/Animation.h"
#include "views/FocusRing.h"

namespace brindle {

namespace {

// Points.
constexpr QRect titlePlace(16, 22, 240, 16);
constexpr QPoint closePlace(272, 18);
constexpr QRect sizeLabelPlace(16, 65, 200, 14);
constexpr QPoint sizePlace(16, 87);
constexpr QRect loginLabelPlace(16, 140, 200, 14);
constexpr QPoint switchPlace(256, 136);
constexpr QRect themeLabelPlace(16, 179, 200, 14);
constexpr QPoint themePlace(16, 201);

constexpr Label::Look sectionLook{.style = TextStyle::subheadline};

constexpr std::array<std::int64_t, 3> historySizes = {25, 50, 100};

template <typename Values, typename Write>
std::vector<QString> titles(const Values& values, Write write) {
    std::vector<QString> written;
    std::ranges::transform(values, std::back_inserter(written), write);
    return written;
}

template <typename Values, typename Value>
std::optional<std::size_t> indexOf(const Values& values, const Value& value) {
    const auto found = std::ranges::find(values, value);
    return found == values.end() ? std::nullopt : std::optional<std::size_t>(found - values.begin());
}

}  // namespace

SettingsView::SettingsView(SettingsManager& settingsManager, Published<bool>& isPresented, QWidget* parent)
    : QWidget(parent),
      settingsManager_(settingsManager),
      title_(QStringLiteral("Settings"), {.style = TextStyle::headline}, this),
      closeButton_(SymbolButton::Kind::close, QStringLiteral("Close"), this),
      sizeLabel_(QStringLiteral("History Size"), sectionLook, this),
      sizeControl_(
          sizeLabel_.text(), titles(historySizes, [](std::int64_t size) { return QString::number(size); }),
          [this](std::size_t index) { settingsManager_.setMaxClipboardItems(historySizes[index]); }, this),
      loginLabel_(QStringLiteral("Start at Login"), sectionLook, this),
      loginSwitch_(loginLabel_.text(), this),
      themeLabel_(QStringLiteral("Theme"), sectionLook, this),
      themeControl_(
          themeLabel_.text(), titles(allAppThemes, [](AppTheme theme) { return toQString(rawValue(theme)); }),
          [this](std::size_t index) { settingsManager_.setAppTheme(allAppThemes[index]); }, this) {
    setAccessible(*this, QAccessible::Dialog, title_.text());
    setFixedSize(fixedSize);
    setAttribute(Qt::WA_NoMousePropagation);
    title_.setGeometry(titlePlace);
    closeButton_.move(closePlace);
    sizeLabel_.setGeometry(sizeLabelPlace);
    sizeControl_.move(sizePlace);
    loginLabel_.setGeometry(loginLabelPlace);
    loginSwitch_.move(switchPlace);
    themeLabel_.setGeometry(themeLabelPlace);
    themeControl_.move(themePlace);
    connect(&closeButton_, &SymbolButton::clicked, this,
            [&isPresented] { withAnimation([&isPresented] { isPresented = false; }); });
    connect(&loginSwitch_, &Switch::clicked, this, [this](bool isOn) { settingsManager_.setLaunchAtLogin(isOn); });
    refresh();
}

void SettingsView::setColorScheme(ColorScheme scheme) {
    scheme_ = scheme;
    for (Label* label : {&title_, &sizeLabel_, &loginLabel_, &themeLabel_})
        label->setColorScheme(scheme);
    for (SegmentedControl* control : {&sizeControl_, &themeControl_})
        control->setColorScheme(scheme);
    closeButton_.setColorScheme(scheme);
    loginSwitch_.setColorScheme(scheme);
    update();
}

void SettingsView::refresh() {
    sizeControl_.setChosen(indexOf(historySizes, settingsManager_.maxClipboardItems().value()));
    loginSwitch_.setChecked(settingsManager_.launchAtLogin().value());
    themeControl_.setChosen(indexOf(allAppThemes, settingsManager_.appTheme().value()));
}

void SettingsView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    fillRounded(painter, rect(), cornerRadius, color(Role::surface, scheme_));
}

}  // namespace brindle
