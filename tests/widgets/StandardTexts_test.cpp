#include "widgets/StandardTexts.h"

#include "support/PrintQt.h"
#include "support/WindowTest.h"

#include <QDialogButtonBox>
#include <QFileDialog>
#include <QPushButton>

using namespace Qt::StringLiterals;

TEST_F(WindowTest, TheFileDialogFollowsTheLanguageOfTheProgramThereAndBack) {
    const auto cancelText = [] {
        QFileDialog dialog;
        dialog.setOption(QFileDialog::DontUseNativeDialog);
        auto* buttons = dialog.findChild<QDialogButtonBox*>();
        return buttons->button(QDialogButtonBox::Cancel)->text().remove(u'&');
    };
    for (const int language : {0, 1, 1, 0}) {
        setLanguage(language);
        StandardTexts::followLanguage();
        EXPECT_EQ(cancelText(), language == 0 ? u"Abbrechen"_s : u"Cancel"_s);
    }
}
