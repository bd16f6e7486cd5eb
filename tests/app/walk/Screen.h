#pragma once

#include <QGuiApplication>
#include <QImage>
#include <QPoint>
#include <QProcess>
#include <QString>
#include <QStringList>
#include <functional>
#include <memory>
#include <optional>

/// A screen of its own with a window manager, and one person's hands and eyes before it: keys pressed as the X server
/// passes them on, titles of windows, the clipboard, pictures. What is waited for is asked for until it is so; nothing
/// relies on a pause.
class Screen {
public:
    /// Programs that it takes and that are not installed.
    static QStringList missingPrograms();

    /// @param folder where the window manager may keep its things
    explicit Screen(const QString& folder);
    ~Screen();
    bool stands() const { return stands_; }

    /// Starts a program on the screen.
    void start(QProcess& program, const QString& file);

    /// Asks until the answer is yes, for as long as a person would wait. @return the last answer
    static bool until(const std::function<bool()>& condition);

    /// Keys by their names: "Tab", "ctrl+a".
    void press(const QStringList& keys);
    /// ASCII only.
    void type(const QString& text);

    /// Presses keys and waits for a line of a tree that they select. @return a point within its text
    std::optional<QPoint> selectedBy(const QStringList& keys);
    /// Drags with the right button, and lets it go once the picture is taken.
    void dragRight(const QPoint& from, const QPoint& to, const std::function<void()>& beforeRelease);

    QString activeWindow() const;
    QString activeTitle() const;
    /// Width of a window in pixels.
    int widthOf(const QString& window) const;
    /// Waits until another window than `before` is active and has the title.
    bool opens(const QString& title, const QString& before) const;

    /// Saves what is to be seen, once it has come to rest. @return false if nothing is to be seen
    bool take(const QString& file) const;

private:
    QProcess server_, manager_;
    std::unique_ptr<QGuiApplication> application_;
    bool stands_ = false;

    static QImage seen();
    static QString xdotool(const QStringList& arguments);
};
