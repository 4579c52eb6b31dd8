#pragma once

#include <QRect>
#include <QString>
#include <vector>

#include "app/panels/caps_tree.h"

class QTreeWidget;
class QWidget;

namespace panels {

// The tree of a caps dialog: one column without a header, a root per branch and a leaf per line, collapsed at
// first, the widest leaf deciding the column so a long line scrolls rather than being cut.
QTreeWidget* makeCapsTreeWidget(QWidget* parent, int id, const QString& accessibleName, const QRect& place,
                                const std::vector<CapsTreeBranch>& branches);

}  // namespace panels
