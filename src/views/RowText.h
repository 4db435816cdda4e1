#pragma once

#include <QPointF>
#include <memory>
#include <string_view>

class QPainter;
class QString;
class QTextLayout;

namespace brindle {

/// An entry's text as its row shows it: without the white space around it, at most two lines, cut with an ellipsis.
/// Only the beginning of a long text is ever laid out.
class RowText {
public:
    RowText(std::string_view content, double width);
    ~RowText();
    RowText(RowText&&) noexcept;
    RowText& operator=(RowText&&) noexcept;

    [[nodiscard]] int lineCount() const;
    /// With the painter's pen; the first line begins there.
    void draw(QPainter& painter, QPointF topLeft) const;

    /// The lines that a text takes. Plain ASCII in a monospaced font is counted, not laid out.
    static int lineCount(std::string_view content, double width);

    /// The text on one line, for assistive technology.
    static QString spoken(std::string_view content);

private:
    void layOut(const QString& text, double width);

    std::unique_ptr<QTextLayout> layout_;
};

}  // namespace brindle
