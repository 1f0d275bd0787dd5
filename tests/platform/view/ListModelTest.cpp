#include "platform/view/ListModel.h"

#include <QAbstractItemModelTester>

#include <gtest/gtest.h>
#include <string>

namespace lamina::test {
namespace {

struct Sticker {
    std::string name;
    bool chosen = false;
};

TEST(ListModel, ChangesRowByRow)
{
    ListModel<Sticker> list{{"name", &Sticker::name}, {"chosen", &Sticker::chosen}};
    const QAbstractItemModelTester tester(&list, QAbstractItemModelTester::FailureReportingMode::Fatal);
    list.reset({{"a"}, {"b"}, {"c"}, {"d"}});
    const QPersistentModelIndex b = list.index(1); // stays with its row
    list.insert(0, {"x"});
    list.move(2, 99);
    list.move(4, 1);
    list.remove(2);
    std::string names;
    for (const Sticker& sticker : list.rows())
        names += sticker.name;
    EXPECT_EQ(names, "xbcd");
    EXPECT_EQ(b.row(), 1);

    std::string told;
    QObject::connect(&list, &QAbstractItemModel::dataChanged, [&](const auto& from, const auto&, const auto& roles) {
        for (const int role : roles)
            told += std::to_string(from.row()) + list.roleNames().value(role, "display").toStdString() + ' ';
    });
    list.edit(3, [](Sticker& sticker) { sticker.chosen = true; });
    list.change(1, {"bb"});
    list.change(2, {"c"});
    EXPECT_EQ(told, "3chosen 1name 1display ");
    EXPECT_EQ(list.data(b, list.roleNames().key("name")), "bb");
}

} // namespace
} // namespace lamina::test
