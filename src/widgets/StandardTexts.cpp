#include "widgets/StandardTexts.h"

#include "app/globals.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QPointer>
#include <QTranslator>

using namespace Qt::StringLiterals;

void StandardTexts::followLanguage() {
    // The application owns it: a translator must not outlive the application that it is installed in.
    static QPointer<QTranslator> german;
    const bool wanted = gLanguage == 0;
    if (wanted == !german.isNull())
        return;
    if (!wanted) {
        QCoreApplication::removeTranslator(german);
        delete german;
        return;
    }
    auto* translator = new QTranslator(QCoreApplication::instance());
    if (translator->load(u"qtbase_de"_s, QLibraryInfo::path(QLibraryInfo::TranslationsPath)) &&
        QCoreApplication::installTranslator(translator))
        german = translator;
    else
        delete translator;
}
