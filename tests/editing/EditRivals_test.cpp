#include "EditingWorld.h"
#include "editing/EditRun.h"
#include "support/SecondProgram.h"

using namespace Qt::StringLiterals;

namespace {

class EditRivals : public EditingWorld {
protected:
    SecondProgram other{catalogue.path()};

    Operation operation(const char* name) {
        for (const Operation& one : operations())
            if (QByteArray(one.name) == name)
                return one;
        ADD_FAILURE() << "no operation " << name;
        return {};
    }
};

TEST_F(EditRivals, OfAnyRowThatTheAnswersRestOnKeepTheEditFromBeingWritten) {
    const struct {
        const char* operation;
        std::vector<const char*> changes;
    } cases[] = {
        {"new category", {"DELETE FROM tkey_Category WHERE id = 50"}},
        {"new study", {"DELETE FROM tkey_Study WHERE id_StudyNo = 'G002'"}},
        {"rename category",
         {"UPDATE tkey_Category SET dt_EnIndicatorName = 'x' WHERE id = 53",
          "UPDATE tkey_Category SET dt_EnIndicatorDescription = 'x' WHERE id = 53",
          "UPDATE tkey_Category SET fid = 51 WHERE id = 53", "DELETE FROM tkey_Category WHERE id = 53"}},
        {"rename study",
         {"UPDATE tkey_Study SET dt_StudyTitle = 'TITEL' WHERE id_StudyNo = 'H1'",
          "DELETE FROM tkey_Study WHERE id_StudyNo = 'H1'"}},
        {"description",
         {"UPDATE tkey_Category SET dt_IndicatorDescription = 'x' WHERE id = 2",
          "DELETE FROM tkey_Category WHERE id = 2"}},
        {"delete category",
         {"UPDATE tkey_Category SET dt_IndicatorName = 'x' WHERE id = 50",
          "UPDATE tkey_Category SET dt_IndicatorName = 'x' WHERE id = 56",
          "INSERT INTO tkey_Category (fid, dt_IndicatorName) VALUES (56, 'x')",
          "UPDATE tkey_Category SET fid = 53 WHERE id = 51"}},
        {"delete group of studies", {"UPDATE tkey_Study SET fid = 'G002' WHERE id_StudyNo = 'QX2020'"}},
        {"order categories",
         {"UPDATE tkey_Category SET [Order] = 99 WHERE id = 50", "DELETE FROM tkey_Category WHERE id = 52",
          "UPDATE tkey_Category SET fid = 0 WHERE id = 57"}},
        {"order studies", {"UPDATE tkey_Study SET fid = 'G002' WHERE id_StudyNo = 'QX2020'"}},
        {"delete assignments", {"DELETE FROM trel_VariableCategory WHERE fid = 53"}},
        {"delete variables", {"DELETE FROM tkey_Variable WHERE fi_StudyNo = 'H1' AND id_VarName = 'B'"}},
        {"copy category",
         {"DELETE FROM tkey_Category WHERE id = 51", "DELETE FROM tkey_Category WHERE id = 50",
          "UPDATE tkey_Category SET dt_IndicatorName = 'x' WHERE id = 56"}},
        {"move category",
         {"UPDATE tkey_Category SET fid = 56 WHERE id = 52", "DELETE FROM tkey_Category WHERE id = 52",
          "UPDATE tkey_Category SET fid = 51 WHERE id = 50"}},
        {"copy group of studies", {"DELETE FROM tkey_Study WHERE id_StudyNo = 'H2'"}},
        {"move study", {"UPDATE tkey_Study SET fid = 'G001' WHERE id_StudyNo = 'H1'"}},
        {"copy variables", {"DELETE FROM tkey_Category WHERE id = 52"}},
        {"move variables",
         {"DELETE FROM tkey_Category WHERE id = 54", "DELETE FROM trel_VariableCategory WHERE fid = 53"}},
    };
    const QString first = digest();
    other.run("CREATE TEMP TABLE c AS SELECT * FROM tkey_Category; CREATE TEMP TABLE s AS SELECT * FROM tkey_Study;"
              "CREATE TEMP TABLE v AS SELECT * FROM tkey_Variable;"
              "CREATE TEMP TABLE r AS SELECT * FROM trel_VariableCategory");
    for (const auto& [name, changes] : cases)
        for (const char* const change : changes) {
            SCOPED_TRACE(std::string(name) + ": " + change);
            asker.boxes.clear();
            QString rivals;
            asker.meanwhile = [&] {
                other.run(change);
                rivals = digest();
            };
            EXPECT_FALSE(operation(name).run());
            EXPECT_EQ(digest(), rivals);
            EXPECT_NE(rivals, first);
            const QStringList told = asker.texts();
            EXPECT_EQ(told.filter(u"anderen Programm"_s).size() + told.count(u"Variable nicht gefunden!"_s), 1)
                << told.join(u'\n').toStdString();
            EXPECT_EQ(differences(), QString());
            EXPECT_FALSE(history().canUndo());
            other.run("BEGIN; DELETE FROM tkey_Category; INSERT INTO tkey_Category SELECT * FROM c;"
                      "DELETE FROM tkey_Study; INSERT INTO tkey_Study SELECT * FROM s;"
                      "DELETE FROM tkey_Variable; INSERT INTO tkey_Variable SELECT * FROM v;"
                      "DELETE FROM trel_VariableCategory; INSERT INTO trel_VariableCategory SELECT * FROM r; COMMIT");
            refreshExplorers();
            ASSERT_EQ(digest(), first);
        }
}

TEST_F(EditRivals, KeepAStepFromBeingTakenBackAndTheFileFromBeingWritten) {
    ASSERT_TRUE(operation("delete category").run());
    const QString name = history().undoName();
    other.run("INSERT INTO tkey_Category (id, fid, dt_IndicatorName) VALUES (56, 0, 'anders')");
    const QString rivals = digest();
    EXPECT_FALSE(history().undo());
    EXPECT_EQ(digest(), rivals);
    EXPECT_EQ(asker.texts().filter(u"Rückgängig machen ist nicht möglich"_s).size(), 1);
    EXPECT_EQ(history().undoName(), name);
    EXPECT_EQ(differences(), QString());
    other.run("DELETE FROM tkey_Category WHERE id = 56; BEGIN IMMEDIATE");
    asker.boxes.clear();
    dao::DBEngine::instance().setLockWait(50);
    EXPECT_FALSE(history().undo());
    EXPECT_FALSE(operation("rename study").run());
    dao::DBEngine::instance().setLockWait(2000);
    EXPECT_EQ(asker.texts().filter(u"locked"_s).size(), 2) << asker.texts().join(u'\n').toStdString();
    other.run("ROLLBACK");
    EXPECT_TRUE(history().undo());
    EXPECT_EQ(differences(), QString());
}

TEST_F(EditRivals, KeepAStepFromBeingTakenBackThatWouldLeaveTheirRowsOutOfEveryTree) {
    const struct {
        const char *operation, *change, *back;
        bool redone;
    } cases[] = {
        {"new category", "INSERT INTO tkey_Category (id, fid) SELECT 900, max(id) FROM tkey_Category",
         "DELETE FROM tkey_Category WHERE id = 900", false},
        {"new category",
         "INSERT INTO trel_VariableCategory (fid, fi_StudyNo, fi_VariableNo) SELECT max(id), 'H1', 'rival' FROM "
         "tkey_Category",
         "DELETE FROM trel_VariableCategory WHERE fi_VariableNo = 'rival'", false},
        {"new study", "INSERT INTO tkey_Variable (fi_StudyNo, id_VarName) VALUES ('n2', 'rival')",
         "DELETE FROM tkey_Variable WHERE id_VarName = 'rival'", false},
        {"delete category", "INSERT INTO tkey_Category (id, fid) VALUES (901, 56)",
         "DELETE FROM tkey_Category WHERE id = 901", true},
        {"move category", "UPDATE tkey_Category SET fid = 50 WHERE id = 52",
         "UPDATE tkey_Category SET fid = 0 WHERE id = 52", true},
    };
    for (const auto& [name, change, back, redone] : cases) {
        SCOPED_TRACE(std::string(name) + ": " + change);
        asker.boxes.clear();
        asker.given = 0;
        ASSERT_TRUE(operation(name).run());
        if (redone) {
            ASSERT_TRUE(history().undo());
        }
        other.run(change);
        const QString rivals = digest();
        EXPECT_FALSE(redone ? history().redo() : history().undo());
        EXPECT_EQ(digest(), rivals);
        EXPECT_EQ(asker.texts().filter(u"ist nicht möglich"_s).size(), 1);
        EXPECT_EQ(differences(), QString());
        other.run(back);
        refreshExplorers();
        EXPECT_TRUE(redone ? history().redo() && history().undo() : history().undo());
    }
}

} // namespace
