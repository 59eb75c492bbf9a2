#pragma once

#include <QSize>

#include <optional>

class QAbstractItemView;
class QComboBox;
class QDialog;
class QHeaderView;
class QString;
class QTreeView;
class QWidget;
class Settings;

/// What the windows share: where a window was and how wide the columns of its list were, kept in the settings in
/// twips (1/1440 inch, 15 to a device-independent pixel), and small helpers for lists and combo boxes. A window, a
/// control or a list goes by its object name.
namespace Controls {

inline constexpr int kTwipsPerPixel = 15;

/// Whether the user may change the window's size.
[[nodiscard]] bool IsSizable(const QWidget &window);

/// False on Wayland, where windows neither know nor choose where they are.
[[nodiscard]] bool HasPosition();

/// Keys "Left" and "Top", and for a window that can be resized "Width" and "Height". Nothing is written while the
/// window is minimised or maximised.
void SaveWindowPosition(Settings &settings, const QWidget &window);

/// A value that is missing, no number, not positive where it is a size, or absurd is passed over. The window, its frame
/// included, is made to fit the screen and moved until all of it can be seen.
void RestoreWindowPosition(const Settings &settings, QWidget &window);

void SaveControlSize(Settings &settings, const QWidget &control);

/// The size that SaveControlSize kept, in pixels, where both its values are good.
[[nodiscard]] std::optional<QSize> StoredControlSize(const Settings &settings, const QWidget &control);

/// Section "<list> Column Widths", a key a column: its caption.
void SaveColumnWidths(Settings &settings, const QHeaderView &header);
void RestoreColumnWidths(const Settings &settings, QHeaderView &header);

/// Gives placeholders a colour of their own where the style paints them like what was typed.
void MakePlaceholdersQuiet();

/// Makes the first item whose data is `data` current, or none when there is no such item.
void SelectComboItemByData(QComboBox &combo, int data);

/// Gives a window its first size, in characters and lines of its font.
void SetFirstSize(QWidget &window, int characters, int lines);

/// The side of a small picture beside text of this widget's font, in pixels.
[[nodiscard]] int IconSide(const QWidget &widget);

/// Makes a dialog as large as its texts need, also with a large font, as far as the screen has room. Where it has not
/// even room for the least, all but the row of buttons, which is the last item of its layout, scrolls.
void FitToContents(QDialog &dialog);

/// Gives a tree view the look and the keys of a report: whole rows, no tree, one Tab stop, pictures as high as the
/// text.
void SetUpReport(QTreeView &list);

/// Some looks write a list without the focus as faintly as what cannot be used; this one they write as if it had it.
void KeepReadable(QAbstractItemView &list);

/// Writes a hint quietly into the room below the rows of a list that has few or none, from its paint event. Nothing for
/// an empty one.
void PaintHint(QAbstractItemView &list, const QString &hint);

} // namespace Controls
