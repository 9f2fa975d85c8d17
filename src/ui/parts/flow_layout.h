#pragma once

#include <QLayout>
#include <QList>
#include <QRect>
#include <QStyle>

namespace tally::ui {

/// Places its items from left to right in rows, as words in a text. With an alignment to the
/// horizontal centre each row stands in the middle.
class FlowLayout : public QLayout {
    Q_OBJECT

public:
    /// \param margin on all sides; below 0 the style's
    /// \param h_spacing between two items, and \param v_spacing between two rows; below 0 those of
    /// the parent or the style
    explicit FlowLayout(QWidget *parent = nullptr, int margin = -1, int h_spacing = -1,
                        int v_spacing = -1);
    ~FlowLayout() override;

    void addItem(QLayoutItem *item) override;
    Qt::Orientations expandingDirections() const override;
    bool hasHeightForWidth() const override;
    int heightForWidth(int width) const override;
    int count() const override;
    QLayoutItem *itemAt(int index) const override;
    QLayoutItem *takeAt(int index) override;
    QSize minimumSize() const override;
    void setGeometry(const QRect &rect) override;
    QSize sizeHint() const override;

private:
    enum class Pass { Measure, Place };

    int lay_out(const QRect &rect, Pass pass) const;
    void centre(qsizetype first, qsizetype end, int free_width) const;
    int space_after(const QLayoutItem &item, Qt::Orientation direction) const;
    int inherited_spacing(QStyle::PixelMetric metric) const;

    QList<QLayoutItem *> items_; ///< owned
    int h_spacing_;
    int v_spacing_;
};

} // namespace tally::ui
