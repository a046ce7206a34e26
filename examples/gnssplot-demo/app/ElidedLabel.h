// SPDX-License-Identifier: MIT
#ifndef GNSSDEMO_ELIDEDLABEL_H
#define GNSSDEMO_ELIDEDLABEL_H

#include <QFrame>
#include <QString>

namespace gnssdemo {

/*!
    One line of plain text that never makes its window wider: it takes the
    width it is given and ends in "..." when the text is longer, the whole
    text then in its tool tip. The status bar's lines are such labels, so
    that a small or scaled window can still shrink.
*/
class ElidedLabel : public QFrame
{
    Q_OBJECT
public:
    explicit ElidedLabel(QWidget* parent = nullptr);

    /*! Shows \a text (plain, one line). */
    void setText(const QString& text);
    QString text() const { return m_text; }
    /*! True when the text does not fit and is shown cut with "...". */
    bool isElided() const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString m_text;
};

} // namespace gnssdemo

#endif // GNSSDEMO_ELIDEDLABEL_H
