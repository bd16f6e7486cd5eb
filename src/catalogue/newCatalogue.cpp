#include "catalogue/newCatalogue.h"

#include "catalogue/schema.h"

#include <QFileInfo>
#include <memory>
#include <utility>

using namespace Qt::StringLiterals;

void makeCatalogue(dao::Database& catalogue) {
    schema::createCatalogueTables(catalogue);
    const std::unique_ptr<dao::Appender> options =
        catalogue.openAppender(u"tsys_Options"_s, {u"dt_OptionName"_s, u"dt_OptionValue"_s});
    for (const auto& [name, value] : {std::pair(u"NumberOfFrmExplorers"_s, u"1"_s),
                                      {u"OpenFrmExplorerAtStart"_s, u"1"_s},
                                      {u"RemoveTableLinksOnExitDB"_s, u"1"_s},
                                      {u"frmExplorer1Name"_s, u"Studien"_s},
                                      {u"frmExplorer1NameEnglish"_s, u"Studies"_s},
                                      {u"frmExplorer1Table"_s, u"Study"_s},
                                      {u"frmExplorer1Type"_s, u"1"_s},
                                      {u"frmExplorer1DescName"_s, u"Studienbeschreibungen"_s},
                                      {u"frmExplorer1DescNameEnglish"_s, u"Study Descriptions"_s}}) {
        options->setText(0, name);
        options->setText(1, value);
        options->appendRow();
    }
    const std::unique_ptr<dao::Appender> database = catalogue.openAppender(u"tkey_Database"_s, {u"dt_DatabaseTitle"_s});
    database->setText(0, QFileInfo(catalogue.Name()).completeBaseName());
    database->appendRow();
}
