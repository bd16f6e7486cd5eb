#include "support/WindowTest.h"

#include "app/globals.h"
#include "catalogue/CDaoDatabase.h"
#include "catalogue/mdDataBase.h"
#include "config/Options.h"
#include "language/CText.h"
#include "language/mdLanguage.h"
#include "platform/system/Paths.h"
#include "widgets/Desktop.h"

#include <QApplication>
#include <QDialog>
#include <QDir>
#include <QFile>
#include <QPointer>

using namespace Qt::StringLiterals;

namespace {

/// On a desktop a list that drops down leaves the window active that it belongs to. The offscreen platform makes the
/// list the active one, and none when it closes.
class PopupWatch : public QObject {
protected:
    bool eventFilter(QObject* object, QEvent* event) override {
        auto* widget = qobject_cast<QWidget*>(object);
        if (!widget || !widget->isWindow())
            return false;
        const bool popup = widget->windowType() == Qt::Popup;
        if (event->type() == QEvent::WindowActivate && !popup)
            behind_ = widget;
        else if (event->type() == QEvent::Hide && popup && behind_ && behind_->isVisible())
            behind_->activateWindow();
        return false;
    }

private:
    QPointer<QWidget> behind_;
};

} // namespace

WindowTest::WindowTest() : popups_(std::make_unique<PopupWatch>()) {
    qApp->installEventFilter(popups_.get());
    gOptions = {};
    QFile::copy(QStringLiteral(VARIDEX_BINARIES "/Vx.mdb"), Paths::join(Paths::applicationFolder(), u"Vx.mdb"_s));
    mdLanguage::LoadTextTable();
    // A modal window that the test did not ask for gets two seconds.
    watch_.setInterval(2000);
    QObject::connect(&watch_, &QTimer::timeout, &watch_, [] {
        if (QWidget* modal = QApplication::activeModalWidget()) {
            ADD_FAILURE() << "unexpected modal window: " << modal->windowTitle().toStdString();
            if (auto* dialog = qobject_cast<QDialog*>(modal))
                dialog->reject();
            else
                modal->close();
        }
    });
    watch_.start();
}

WindowTest::~WindowTest() {
    mdDataBase::CloseDataBase();
    unloadChildWindows();
    setDesktop(nullptr);
}

QString WindowTest::openSampleArchive() {
    const QString folder = QStringLiteral(VARIDEX_SAMPLES);
    const QString path = home.path(u"solvarden.mdb"_s);
    QFile::copy(folder + u"/solvarden.mdb"_s, path);
    gOptions.DataPath = folder;
    EXPECT_EQ(mdDataBase::OpenQXDatabase(path), 1);
    return path;
}

void WindowTest::setLanguage(int language) {
    mdLanguage::SetLanguage(static_cast<qint16>(language));
}

void WindowTest::settle() {
    for (int i = 0; i < 3; ++i) {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCoreApplication::processEvents();
    }
}
