#pragma once

#include "app/globals.h"
#include "catalogue/CDaoDatabase.h"
#include "config/Options.h"
#include "editing/Drop.h"
#include "editing/Entries.h"
#include "editing/History.h"
#include "explorer/CatalogueTree.h"
#include "support/CatalogueDigest.h"
#include "support/FailingFiles.h"
#include "support/PrintQt.h"
#include "support/ScriptedAsker.h"
#include "support/TestCatalogue.h"
#include "support/TestHome.h"

#include <gtest/gtest.h>

/// Says yes to everything, and gives each new thing a name of its own.
class WillingAsker : public ScriptedAsker {
public:
    QString next; ///< what is typed where no number is asked for; else names are counted
    int given = 0;
    QStringList questions; ///< with OK and Cancel

    std::function<void()> meanwhile; ///< what happens while the first question is open

    ui::Answer messageBox(const ui::Box& box) override {
        if (box.buttons != ui::Buttons::Ok)
            happen();
        switch (box.buttons) {
        case ui::Buttons::YesNo:
        case ui::Buttons::YesNoCancel:
            return ui::Answer::Yes;
        case ui::Buttons::AbortRetryIgnore:
        case ui::Buttons::RetryCancel:
            ADD_FAILURE() << "no edit offers to go on: " << box.text.toStdString();
            return ui::Answer::Abort;
        case ui::Buttons::Ok:
            boxes.push_back(box);
            return ui::Answer::Ok;
        default:
            questions.push_back(box.text);
            return ui::Answer::Ok;
        }
    }
    std::optional<QString> inputBox(const QString& prompt, const QString&, const QString&) override {
        happen();
        if (prompt.contains(QStringLiteral("Studiennummer")))
            return QStringLiteral("N%1").arg(++given);
        return next.isEmpty() ? QStringLiteral("Name %1").arg(++given) : next;
    }
    /// An editor that comes back after a failure is left.
    std::optional<QString> editText(const QString&, const QString& text, const QString&) override {
        happen();
        return boxes.empty() ? std::optional(text + QStringLiteral(" mehr")) : std::nullopt;
    }
    std::optional<std::vector<int>> orderLines(const ui::LineOrder& order) override {
        happen();
        std::vector<int> places(order.lines.size());
        for (size_t i = 0; i < places.size(); ++i)
            places[i] = static_cast<int>(places.size() - 1 - i);
        return places;
    }

private:
    void happen() {
        if (const auto once = std::exchange(meanwhile, {}))
            once();
    }
};

/// A catalogue with a forest of categories and of studies, and explorers of it. Its files can be made to fail.
class EditingWorld : public testing::Test {
protected:
    TestHome home;
    FailingFiles files;
    WillingAsker asker;
    TestCatalogue catalogue{home.path()};
    ExplorerModel categories, english, studies;

    void SetUp() override {
        catalogue.fill();
        catalogue.together([&] { addMore(); });
        ASSERT_EQ(catalogue.open(), 1);
        gOptions.EditStudiesMode = true;
        categories.open(2);
        gOptions.EnglishLanguage = true;
        english.open(2);
        gOptions.EnglishLanguage = false;
        studies.open(1);
    }
    void TearDown() override {
        history().onChange = {};
        history().clear();
    }

    std::vector<ExplorerModel*> models() { return {&categories, &english, &studies}; }
    QString digest() const { return CatalogueDigest::of(catalogue.path()); }
    QString integrity() const { return CatalogueDigest::integrity(catalogue.path()); }

    /// Where the trees in view differ from those that are read now. A node without text is one that was made in the
    /// other language.
    QString differences() {
        QStringList all;
        for (const ExplorerModel* model : models()) {
            CatalogueTree fresh;
            Update_TreeView(fresh, model->state.ltreetype, model->state.bELTree);
            compare(*model->tree.root(), *fresh.root(), all);
            if (model->tree.nodes().size() != fresh.nodes().size())
                all << QStringLiteral("%1 nodes, %2 entries").arg(model->tree.nodes().size()).arg(fresh.nodes().size());
            if (const CatalogueNode* node = model->selectedNode()) {
                ExplorerModel anew;
                anew.open(model->state.ltreetype);
                anew.select(node->Key);
                if (listed(*model) != listed(anew))
                    all << listed(*model) + QStringLiteral(" instead of ") + listed(anew);
            }
        }
        return all.join(u'\n');
    }

    struct Operation {
        const char* name;
        std::function<bool()> run;
    };
    /// One of each kind; each can be done at the beginning.
    std::vector<Operation> operations() {
        const auto on = [](ExplorerModel& model, const char* key, const auto& run) {
            return [&model, key, run] { return model.select(QString::fromLatin1(key), true) && run(model); };
        };
        const auto rows = [](std::vector<int> which) {
            return [which](ExplorerModel& model) { return deleteRows(model, which); };
        };
        const auto entry = [](ExplorerModel& model, const char* key, const char* target, TransferMode mode) {
            return [&model, key, target, mode] {
                return dropEntry(model, QString::fromLatin1(key), model, QString::fromLatin1(target), mode);
            };
        };
        const auto list = [this](ExplorerModel& model, const char* key, std::vector<int> which, const char* target,
                                 TransferMode mode) {
            return [&model, key, which, target, mode, this] {
                return dropRows(model, QString::fromLatin1(key), which, categories, QString::fromLatin1(target), mode);
            };
        };
        using enum TransferMode;
        return {{"new category", on(categories, "B50", newEntry)},
                {"new study", on(studies, "AG002", newEntry)},
                {"rename category", on(english, "B53", renameEntry)},
                {"rename study", on(studies, "AH1", renameEntry)},
                {"description", on(categories, "B2", editDescription)},
                {"delete category", on(categories, "B50", deleteEntry)},
                {"delete group of studies", on(studies, "AG002", deleteEntry)},
                {"order categories", on(categories, "B51", showPosition)},
                {"order studies", on(studies, "AG002", showPosition)},
                {"delete assignments", on(categories, "B53", rows({0, 2}))},
                {"delete variables", on(studies, "AH1", rows({1}))},
                {"copy category", entry(categories, "B50", "B51", Copy)},
                {"move category", entry(english, "B50", "B52", Move)},
                {"copy group of studies", entry(studies, "AG002", "AG001", Copy)},
                {"move study", entry(studies, "AH1", "A0", Move)},
                {"copy variables", list(studies, "AH1", {0, 1, 2}, "B52", Copy)},
                {"move variables", list(categories, "B53", {0, 1}, "B54", Move)}};
    }

    static bool dropEntry(ExplorerModel& from, const QString& key, ExplorerModel& to, const QString& target,
                          TransferMode mode) {
        const auto source = DropSource::entry(from.tree, key, from.state.bELTree);
        return source && drop(*source, DropTarget::in(to, target, false), mode);
    }
    static bool dropRows(ExplorerModel& from, const QString& key, const std::vector<int>& rows, ExplorerModel& to,
                         const QString& target, TransferMode mode) {
        from.select(key, true);
        const auto source = DropSource::rows(from, rows);
        return source && drop(*source, DropTarget::in(to, target, false), mode);
    }

private:
    void addMore() {
        for (int id = 50; id < 58; ++id)
            catalogue.addCategory(QStringLiteral("Category"), id, id < 53 ? 0 : id - 3, id % 3,
                                  QStringLiteral("Eintrag %1").arg(id),
                                  {{"dt_EnIndicatorName", QStringLiteral("Entry %1").arg(id)}});
        for (const int id : {50, 53, 56, 57})
            for (const char* const name : {"V5", "V6", "V7"})
                catalogue.addAssignment(QStringLiteral("Category"), id, QStringLiteral("QX1919"),
                                        QString::fromLatin1(name));
        catalogue.addStudy(QStringLiteral("G002"), QStringLiteral("Gruppe"),
                           {{"fid", QStringLiteral("0")}, {"Order", 7}, {"dt_IsGroup", true}});
        catalogue.addStudy(QStringLiteral("H1"), QStringLiteral("Titel"),
                           {{"fid", QStringLiteral("G002")}, {"Order", 1}});
        catalogue.addStudy(QStringLiteral("H2"), QStringLiteral("Titel"),
                           {{"fid", QStringLiteral("G002")}, {"Order", 2}});
        for (const char* const name : {"A", "B", "C"})
            catalogue.addVariable(QStringLiteral("H1"), QString::fromLatin1(name), QStringLiteral("H1_1"));
    }
    static QString listed(const ExplorerModel& model) {
        QStringList rows;
        for (const VariableRow& row : model.list.rows)
            rows << row.cell(1) + u'.' + row.Text;
        rows.sort();
        return model.state.selectedKey + QStringLiteral(": ") + rows.join(u' ');
    }
    static void compare(const CatalogueNode& shown, const CatalogueNode& fresh, QStringList& all) {
        const bool same = shown.Key == fresh.Key &&
                          (shown.Text.isEmpty() || (shown.Text == fresh.Text && shown.Image == fresh.Image));
        if (!same)
            all << shown.Key + u' ' + shown.Text + QStringLiteral(" instead of ") + fresh.Key + u' ' + fresh.Text;
        for (size_t i = 0; same && i < std::max(shown.Children.size(), fresh.Children.size()); ++i) {
            if (i < shown.Children.size() && i < fresh.Children.size())
                compare(*shown.Children[i], *fresh.Children[i], all);
            else
                all << (i < shown.Children.size() ? shown.Children[i]->Key + QStringLiteral(" is too much")
                                                  : fresh.Children[i]->Key + QStringLiteral(" is missing"));
        }
    }
};
