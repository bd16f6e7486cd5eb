#pragma once

#include <QString>
#include <QWidget>
#include <functional>
#include <vector>

class QCommandLinkButton;
class QLabel;
class QVBoxLayout;

/// What the frame shows while no catalogue is open: the ways to one. It knows no files; the frame tells it what there
/// is.
class frmStartPage : public QWidget {
public:
    struct Recent {
        QString file;
        bool isGone = false;
    };
    struct Ways {
        std::vector<Recent> recent;
        bool canImport = false;
        bool hasSample = false, sampleIsBuilt = false;
    };

    /// @param perform runs a command of the frame by its name
    frmStartPage(std::function<void(const QString&)> perform, QWidget* parent);

    /// Shows what there is, in the language of the program.
    void showWays(const Ways& ways);
    /// Puts the keyboard on the nearest way: the last catalogue that is there, else opening one.
    void takeFocus();

private:
    std::function<void(const QString&)> perform_;
    QLabel *lblWelcome_, *lblRecent_;
    QCommandLinkButton *cmdOpen_, *cmdImport_, *cmdSample_;
    QVBoxLayout* recent_; ///< a button for each file
    QCommandLinkButton* firstThere_ = nullptr;

    QCommandLinkButton* way(QVBoxLayout& column, const QString& name, const QString& icon, const QString& command);
    static void say(QCommandLinkButton& button, const QString& caption, const QString& description);
    void showRecent(const std::vector<Recent>& files);
};
