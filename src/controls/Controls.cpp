#include "Controls.h"

#include "ScreenFit.h"
#include "Settings.h"

#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QFormLayout>
#include <QHeaderView>
#include <QLayout>
#include <QPainter>
#include <QScreen>
#include <QScrollArea>
#include <QStyle>
#include <QTreeView>
#include <QVBoxLayout>

#include <cmath>

using namespace Qt::StringLiterals;

namespace Controls {
namespace {

// No screen is larger; what is, came from elsewhere.
constexpr double kMaxPixels = 32767;

void SaveLength(Settings &settings, const QString &section, const QString &key, int pixels)
{
    settings.Save(section, key, QString::number(pixels * kTwipsPerPixel));
}

std::optional<int> StoredPosition(const Settings &settings, const QString &section, const QString &key)
{
    bool ok = false;
    const double pixels = settings.Get(section, key).toDouble(&ok) / kTwipsPerPixel;
    if (!ok || !std::isfinite(pixels) || std::abs(pixels) > kMaxPixels)
        return std::nullopt;
    return static_cast<int>(std::lround(pixels));
}

std::optional<int> StoredLength(const Settings &settings, const QString &section, const QString &key)
{
    const std::optional<int> pixels = StoredPosition(settings, section, key);
    return pixels && *pixels > 0 ? pixels : std::nullopt;
}

QString WidthsSection(const QHeaderView &header)
{
    return header.parent()->objectName() + " Column Widths"_L1;
}

QString Caption(const QHeaderView &header, int column)
{
    return header.model()->headerData(column, Qt::Horizontal).toString();
}

/// Where boxes are high, a form sets its labels nearer to their tops than to their texts.
void SetLabelsBesideTexts(const QDialog &dialog)
{
    for (const QFormLayout *form : dialog.findChildren<QFormLayout *>()) {
        for (int row = 0; row < form->rowCount(); ++row) {
            const QWidget &box = *form->itemAt(row, QFormLayout::FieldRole)->widget();
            form->itemAt(row, QFormLayout::LabelRole)->widget()->setMinimumHeight(box.sizeHint().height());
        }
    }
}

/// Puts all that the dialog holds above its row of buttons into an area that scrolls.
void MakeScrollable(QDialog &dialog)
{
    QLayout &all = *dialog.layout();
    QLayout *buttons = all.takeAt(all.count() - 1)->layout();
    const QMargins margins = all.contentsMargins();
    buttons->setContentsMargins(margins.left(), 0, margins.right(), margins.bottom());
    auto *area = new QScrollArea(&dialog);
    auto *content = new QWidget(area);
    content->setLayout(dialog.layout()); // which the dialog then has no more
    area->setWidget(content);
    area->setWidgetResizable(true);
    area->setFrameShape(QFrame::NoFrame);
    area->setFocusPolicy(Qt::NoFocus);
    auto *around = new QVBoxLayout(&dialog);
    around->setContentsMargins({});
    around->addWidget(area);
    around->addLayout(buttons);
}

} // namespace

bool IsSizable(const QWidget &window)
{
    const bool layoutFixesIt = window.layout() && window.layout()->sizeConstraint() == QLayout::SetFixedSize;
    return !layoutFixesIt && window.minimumSize() != window.maximumSize();
}

bool HasPosition()
{
    return !QGuiApplication::platformName().startsWith("wayland"_L1);
}

void SaveWindowPosition(Settings &settings, const QWidget &window)
{
    if (window.isMinimized() || window.isMaximized() || window.isFullScreen())
        return;
    const QString section = window.objectName();
    if (HasPosition()) {
        SaveLength(settings, section, u"Left"_s, window.x());
        SaveLength(settings, section, u"Top"_s, window.y());
    }
    if (IsSizable(window)) {
        SaveLength(settings, section, u"Width"_s, window.width());
        SaveLength(settings, section, u"Height"_s, window.height());
    }
}

void RestoreWindowPosition(const Settings &settings, QWidget &window)
{
    const QString section = window.objectName();
    if (IsSizable(window)) {
        const int width = StoredLength(settings, section, u"Width"_s).value_or(window.width());
        const int height = StoredLength(settings, section, u"Height"_s).value_or(window.height());
        window.resize(width, height);
    }
    const std::optional<int> left = StoredPosition(settings, section, u"Left"_s);
    const std::optional<int> top = StoredPosition(settings, section, u"Top"_s);
    const bool isPlaced = left || top;
    ScreenFit::Apply(window, isPlaced ? std::optional(QPoint(left.value_or(window.x()), top.value_or(window.y())))
                                      : std::nullopt);
}

void SaveControlSize(Settings &settings, const QWidget &control)
{
    const QString section = control.objectName();
    SaveLength(settings, section, u"Left"_s, control.x());
    SaveLength(settings, section, u"Top"_s, control.y());
    SaveLength(settings, section, u"Width"_s, control.width());
    SaveLength(settings, section, u"Height"_s, control.height());
}

std::optional<QSize> StoredControlSize(const Settings &settings, const QWidget &control)
{
    const std::optional<int> width = StoredLength(settings, control.objectName(), u"Width"_s);
    const std::optional<int> height = StoredLength(settings, control.objectName(), u"Height"_s);
    return width && height ? std::optional(QSize(*width, *height)) : std::nullopt;
}

void SaveColumnWidths(Settings &settings, const QHeaderView &header)
{
    for (int column = 0; column < header.count(); ++column)
        SaveLength(settings, WidthsSection(header), Caption(header, column), header.sectionSize(column));
}

void RestoreColumnWidths(const Settings &settings, QHeaderView &header)
{
    for (int column = 0; column < header.count(); ++column) {
        if (const auto width = StoredLength(settings, WidthsSection(header), Caption(header, column)))
            header.resizeSection(column, *width);
    }
}

void MakePlaceholdersQuiet()
{
    const QPalette colours = QApplication::palette();
    if (colours.color(QPalette::PlaceholderText) != colours.color(QPalette::Text))
        return;
    // Reads on light and on dark, so it may outlive a change from one to the other.
    QPalette quiet;
    quiet.setColor(QPalette::PlaceholderText, QColor(128, 128, 128));
    QApplication::setPalette(quiet);
}

void SelectComboItemByData(QComboBox &combo, int data)
{
    combo.setCurrentIndex(combo.findData(data));
}

void SetFirstSize(QWidget &window, int characters, int lines)
{
    const QFontMetrics font = window.fontMetrics();
    window.resize(characters * font.averageCharWidth(), lines * font.lineSpacing());
}

int IconSide(const QWidget &widget)
{
    const int smallest = widget.style()->pixelMetric(QStyle::PM_SmallIconSize, nullptr, &widget);
    return qMax(smallest, widget.fontMetrics().height());
}

void FitToContents(QDialog &dialog)
{
    SetLabelsBesideTexts(dialog);
    constexpr int kRoomForFrame = 40;
    QSize room = dialog.screen()->availableGeometry().size();
    room.rheight() -= kRoomForFrame;
    // Qt by itself stops at two thirds of the screen, and cuts wrapped texts off there.
    QLayout &layout = *dialog.layout();
    QSize size = layout.totalSizeHint();
    int lowest = layout.totalMinimumSize().height();
    if (layout.hasHeightForWidth()) {
        // Wider is lower, as far as texts wrap.
        const auto isTooHigh = [&] { return layout.totalMinimumHeightForWidth(size.width()) > room.height(); };
        const int step = dialog.fontMetrics().averageCharWidth();
        while (isTooHigh() && size.width() + step <= room.width())
            size.rwidth() += step;
        size.setHeight(layout.totalHeightForWidth(size.width()));
        lowest = layout.totalMinimumHeightForWidth(size.width());
    }
    if (lowest > room.height()) {
        MakeScrollable(dialog);
        size.rwidth() += dialog.style()->pixelMetric(QStyle::PM_ScrollBarExtent, nullptr, &dialog);
    }
    dialog.resize(size);
    ScreenFit::Apply(dialog);
}

void SetUpReport(QTreeView &list)
{
    list.setRootIsDecorated(false);
    list.setItemsExpandable(false);
    list.setUniformRowHeights(true);
    list.setIconSize(QSize(IconSide(list), IconSide(list)));
    list.setAllColumnsShowFocus(true);
    list.setTabKeyNavigation(false);
    // An order of columns that the next start forgets is no use.
    list.header()->setSectionsMovable(false);
    list.setSelectionBehavior(QAbstractItemView::SelectRows);
}

void KeepReadable(QAbstractItemView &list)
{
    QPalette colours = list.palette();
    colours.setColor(QPalette::Inactive, QPalette::Text, colours.color(QPalette::Active, QPalette::Text));
    list.setPalette(colours);
}

void PaintHint(QAbstractItemView &list, const QString &hint)
{
    if (hint.isEmpty())
        return;
    const int line = list.fontMetrics().lineSpacing();
    QRect room = list.viewport()->rect().adjusted(line / 2, line, -line / 2, 0);
    room.setTop(room.top() + list.visualRect(list.model()->index(list.model()->rowCount() - 1, 0)).bottom());
    // Fainter than a row, yet easier to read than a placeholder.
    constexpr float kQuiet = 0.7F;
    QColor quiet = list.palette().color(QPalette::Text);
    quiet.setAlphaF(kQuiet);
    QPainter painter(list.viewport());
    painter.setPen(quiet);
    painter.drawText(room, Qt::AlignHCenter | Qt::TextWordWrap, hint);
}

} // namespace Controls
