#include "editing/EditBasis.h"

#include "app/globals.h"
#include "catalogue/CDaoDatabase.h"
#include "explorer/ExplorerModel.h"
#include "platform/dao/Transaction.h"
#include "support/PrintQt.h"
#include "support/ScriptedAsker.h"
#include "support/TestCatalogue.h"
#include "support/TestHome.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

TEST(EditBasis, SeesEachChangeOfWhatTheAnswersRestOnAndNoOther) {
    const TestHome home;
    ScriptedAsker asker;
    TestCatalogue catalogue(home.path());
    catalogue.fill();
    catalogue.together([&] {
        catalogue.addCategory(u"Category"_s, 50, 0, 5, u"Oben"_s);
        catalogue.addCategory(u"Category"_s, 51, 50, 1, u"Mitte"_s);
        catalogue.addCategory(u"Category"_s, 52, 51, 1, u"Unten"_s);
        catalogue.addCategory(u"Category"_s, 60, 0, 6, u"Daneben"_s);
    });
    ASSERT_EQ(catalogue.open(), 1);
    ExplorerModel model;
    model.open(2);
    using Part = std::function<void(EditBasis&)>;
    const Part entry = [](EditBasis&basis) { basis.entry(u"B51"_s); },
               children = [](EditBasis&basis) { basis.children(u"B50"_s).children(u"B0"_s); },
               subtree = [](EditBasis&basis) { basis.subtree(u"B50"_s); },
               shown = [&](EditBasis&basis) { basis.shown(*model.tree.find(u"B51"_s), false); },
               rows = [](EditBasis&basis) {
                   basis.rows(u"SELECT id FROM tkey_Category WHERE fid = 50 AND dt_IndicatorName = 'mitte'"_s);
               };
    const struct {
        const char* change;
        std::vector<Part> seen, unseen;
    } cases[] = {
        {"UPDATE tkey_Category SET dt_IndicatorName = 'MITTE' WHERE id = 51",
         {entry, children, subtree, shown},
         {rows}},
        {"UPDATE tkey_Category SET fid = 60 WHERE id = 51", {entry, children, subtree, shown, rows}, {}},
        {"UPDATE tkey_Category SET dt_EnIndicatorDescription = 'x' WHERE id = 51",
         {entry, subtree},
         {children, shown, rows}},
        {"UPDATE tkey_Category SET [Order] = 9 WHERE id = 60", {children}, {entry, subtree, shown, rows}},
        {"UPDATE tkey_Category SET fid = 50 WHERE id = 60", {children, subtree}, {entry, shown, rows}},
        {"DELETE FROM tkey_Category WHERE id = 52", {subtree}, {entry, children, shown, rows}},
        {"DELETE FROM tkey_Category WHERE id = 51", {entry, children, subtree, shown, rows}, {}},
        {"UPDATE tkey_Category SET fid = 52 WHERE id = 50", {children, subtree}, {entry, shown, rows}},
    };
    for (const auto& [change, seen, unseen] : cases) {
        for (const bool isSeen : {true, false})
            for (const Part& part : isSeen ? seen : unseen) {
                const dao::Transaction taken;
                EditBasis basis;
                part(basis);
                EXPECT_TRUE(basis.stillSo());
                gDatabase.CurrentDatabase()->Execute(QString::fromLatin1(change));
                EXPECT_EQ(basis.stillSo(), !isSeen)
                    << change << ", part " << (isSeen ? &part - seen.data() : &part - unseen.data());
            }
    }
}

} // namespace
