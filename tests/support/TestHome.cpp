#include "support/TestHome.h"

#include "app/globals.h"
#include "language/CText.h"
#include "platform/system/NumberFormat.h"
#include "platform/system/Paths.h"

#include <QDir>

TestHome::TestHome() {
    QDir(folder_.path()).mkpath(QStringLiteral("home"));
    QDir(folder_.path()).mkpath(QStringLiteral("config"));
    qputenv("VARIDEX_HOME", (folder_.path() + QStringLiteral("/home")).toUtf8());
    qputenv("VARIDEX_CONFIG", (folder_.path() + QStringLiteral("/config")).toUtf8());
    Paths::resetApplicationFolder();
    NumberFormat::setDecimalSeparator(QLatin1Char(','));
    gLanguage = 0;
    gErrorTrapping = true;
}

TestHome::~TestHome() {
    gLanguage = 0;
    gTextObject = CText(); // read from this home, it would be there for the next test
    qunsetenv("VARIDEX_HOME");
    qunsetenv("VARIDEX_CONFIG");
    Paths::resetApplicationFolder();
}

QString TestHome::path(const QString& name) const {
    return name.isEmpty() ? folder_.path() : folder_.path() + QLatin1Char('/') + name;
}
