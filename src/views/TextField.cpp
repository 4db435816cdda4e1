#include "views/TextField.h"

#include <QFocusEvent>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QPainter>
#include <QProxyStyle>
#include <QStyleHints>

#include "platform/MainQueue.h"
#include "platform/Pasteboard.h"
#include "platform/Platform.h"
#include "platform/qt/QtText.h"
#include "views/Fonts.h"
#include "views/Palette.h"

namespace brindle {

namespace {

constexpr int caretHeight = 16;
/// Left of the caret in what the base class calls its rectangle.
constexpr int caretMargin = 5;

/// The base class draws its caret in the text's colour; ours is blue, so that one gets no width.
class CaretlessStyle final : public QProxyStyle {
public:
    int pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override {
        return metric == PM_TextCursorWidth ? 0 : QProxyStyle::pixelMetric(metric, option, widget);
    }
};

}  // namespace

TextField::TextField(Published<std::string>& text, const QString& placeholder, QWidget* parent)
    : QLineEdit(parent), bound_(text) {
    auto* style = new CaretlessStyle;
    style->setParent(this);
    setStyle(style);
    setFrame(false);
    setFont(textFont(TextStyle::body));
    setPlaceholderText(placeholder);
    setAccessibleName(placeholder);
    setContextMenuPolicy(Qt::NoContextMenu);
    setAcceptDrops(false);  // the toolkit waits for the program that the dropped text comes from
    setColorScheme(ColorScheme::dark);
    connect(this, &QLineEdit::textEdited, this, [this](const QString& edited) { bound_ = toUtf8(edited); });
    connect(this, &QLineEdit::cursorPositionChanged, this, &TextField::restartBlinking);
    textObserver_ = bound_.subscribe([this](const std::string& next) {
        if (toUtf8(this->text()) != next)
            setText(toQString(next));
    });
}

void TextField::setColorScheme(ColorScheme scheme) {
    scheme_ = scheme;
    QPalette colours = palette();
    colours.setColor(QPalette::Base, Qt::transparent);
    colours.setColor(QPalette::Text, color(Role::primaryText, scheme));
    colours.setColor(QPalette::PlaceholderText, color(Role::secondaryText, scheme));
    colours.setColor(QPalette::Highlight, accentColor());
    colours.setColor(QPalette::HighlightedText, color(Role::onAccent, scheme));
    setPalette(colours);
}

void TextField::paintEvent(QPaintEvent* event) {
    QLineEdit::paintEvent(event);
    if (!isCaretShown_ || hasSelectedText())
        return;
    const int offset = text().isEmpty() && !isComposing_ ? -inset : 1;
    QPainter painter(this);
    painter.fillRect(cursorRect().left() + caretMargin + offset, (height() - caretHeight) / 2, 1, caretHeight,
                     accentColor());
}

void TextField::inputMethodEvent(QInputMethodEvent* event) {
    isComposing_ = !event->preeditString().isEmpty();
    QLineEdit::inputMethodEvent(event);
}

void TextField::keyPressEvent(QKeyEvent* event) {
    if (event->matches(QKeySequence::Paste)) {
        pasteText();
    } else if (event->matches(QKeySequence::Copy)) {
        copySelection();
    } else if (event->matches(QKeySequence::Cut)) {
        copySelection();
        if (hasSelectedText())
            insert({});
    } else if (event->matches(QKeySequence::DeleteCompleteLine)) {  // the base class would copy what it deletes
        selectAll();
        insert({});
    } else if (event->matches(QKeySequence::DeleteEndOfLine)) {
        deselect();
        end(true);
        if (hasSelectedText())
            insert({});
    } else {
        QLineEdit::keyPressEvent(event);
    }
}

void TextField::copySelection() {
    if (!hasSelectedText())
        return;
    platform().pasteboard().clearContents();
    platform().pasteboard().setString(toUtf8(selectedText()));
}

void TextField::pasteText() {
    const auto pasted = platform().pasteboard().string();
    if (!pasted)
        return;
    // Never more than fits: the pasteboard may hold megabytes.
    constexpr std::size_t longestCharacter = 4;
    QString line = toQString(pasted->view().substr(0, longestCharacter * static_cast<std::size_t>(maxLength())));
    insert(line.replace('\n', ' '));
}

// The middle button would paste another program's selection, and wait for that program.
void TextField::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::MiddleButton)
        QLineEdit::mousePressEvent(event);
}

void TextField::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::MiddleButton)
        QLineEdit::mouseReleaseEvent(event);
}

void TextField::focusInEvent(QFocusEvent* event) {
    QLineEdit::focusInEvent(event);
    restartBlinking();
    Q_EMIT focusChanged();
}

void TextField::focusOutEvent(QFocusEvent* event) {
    QLineEdit::focusOutEvent(event);
    restartBlinking();
    Q_EMIT focusChanged();
}

void TextField::restartBlinking() {
    blinking_.reset();
    isCaretShown_ = hasFocus();
    update();
    const int period = QGuiApplication::styleHints()->cursorFlashTime();
    if (!isCaretShown_ || period <= 0)
        return;
    blinking_ = platform().mainQueue().repeat(period / 2000.0, [this] {
        isCaretShown_ = !isCaretShown_;
        update();
    });
}

}  // namespace brindle
