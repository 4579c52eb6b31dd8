#include "app/panels/caps_tree_widget.h"

#include <QHeaderView>
#include <QTreeWidget>

#include "app/panels/controls.h"

namespace panels {

QTreeWidget* makeCapsTreeWidget(QWidget* parent, int id, const QString& accessibleName, const QRect& place,
                                const std::vector<CapsTreeBranch>& branches) {
    auto* tree = new QTreeWidget(parent);
    tree->setObjectName(controlName(id));
    tree->setAccessibleName(accessibleName);
    tree->setGeometry(place);
    tree->setHeaderHidden(true);
    tree->setColumnCount(1);
    tree->setRootIsDecorated(true);
    tree->setUniformRowHeights(true);
    tree->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    tree->header()->setStretchLastSection(false);

    QList<QTreeWidgetItem*> roots;
    for (const CapsTreeBranch& branch : branches) {
        auto* root = new QTreeWidgetItem(QStringList(QString::fromUtf8(branch.text.c_str())));
        for (const std::string& leaf : branch.leaves)
            root->addChild(new QTreeWidgetItem(QStringList(QString::fromUtf8(leaf.c_str()))));
        roots << root;
    }
    tree->addTopLevelItems(roots);
    tree->collapseAll();
    return tree;
}

}  // namespace panels
