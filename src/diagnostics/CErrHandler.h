#pragma once

#include <QString>
#include <array>

/// The one reporter of errors: keeps the procedure stack, shows the box and writes the report files.
///
/// Two reports, each holding the last error only: program errors in `Destination`, database errors in "Daojet.log" of
/// the application folder. Writing them never fails visibly.
class CErrHandler {
public:
    QString AppTitle;
    QString Destination = QStringLiteral("C:\\ERROR.LOG");
    bool DisplayMsgOnError = true;

    /// Enters a procedure; labels beyond a depth of 100 vanish while the depth is still counted.
    void Push(const QString& label);
    /// Leaves a procedure; at the bottom nothing happens.
    void Pop();
    int depth() const { return top_; }
    /// Label of the innermost procedure.
    QString current() const;

    /// Reports a program error: number, description (dao::Error or a run-time error).
    /// @param show false: the report is written, but no box is shown
    void HandleError(int number, const QString& description, bool show = true);
    /// Reports a database error; the text joins the engine's error list (see lastDbErrorText()).
    void HandleDBError(const QString& text, bool show = true);

private:
    static constexpr int maxDepth_ = 100;
    std::array<QString, 103> stack_;
    int top_ = 0;
    int errorNumber_ = 0;
    int errorLine_ = 0;
    QString errorText_;
    QString errorProcedure_;

    QString title();
    QString stackText() const;
    /// @param numbers the lines that only the program report has
    QString reportText(const QString& heading, const QString& errorText, const QString& numbers) const;
    void writeProgramReport() const;
    void writeDatabaseReport(const QString& text) const;
};
