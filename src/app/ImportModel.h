#pragma once

#include <QString>
#include <QStringList>

/// What the import dialog asks for and checks while it is typed, without widgets: a survey file, the catalogue that it
/// goes into, the number and title of its study. It reads no survey file; `vdx import` does.
class ImportModel {
public:
    /// @param catalogue that is proposed
    ImportModel(const QString& file, const QString& catalogue);

    const QString& file() const { return file_; }
    const QString& catalogue() const { return catalogue_; }
    const QString& study() const { return study_; }
    QString title;
    bool replace = false; ///< a study of that number may be there
    bool encode = false;  ///< text variables with labels become numbers

    /// A number that nobody has typed follows file and catalogue.
    void setFile(const QString& file);
    void setCatalogue(const QString& catalogue);
    void setStudy(const QString& study);

    /// What keeps the import from being run, in the user's language; empty for what is right or not typed yet.
    const QString& fileFault() const { return fileFault_; }
    const QString& catalogueFault() const { return catalogueFault_; }
    QString studyFault() const;
    /// What becomes of the catalogue: whether it is made, or how many studies it has.
    QString catalogueNote() const;
    bool mayRun() const;

    /// The command line of `vdx`.
    QStringList arguments() const;

    /// A number made of the letters and digits of a file's name, a letter first, that is not among those taken.
    static QString proposedStudy(const QString& file, const QStringList& taken);

private:
    QString file_, catalogue_, study_;
    QString fileFault_; ///< as of when it was named
    bool typed_ = false;
    QStringList taken_;      ///< numbers of studies and groups in the catalogue
    QString catalogueFault_; ///< as of when it was named
    bool isNew_ = false;

    QString faultOfFile() const;
    void propose();
    bool isTaken() const { return taken_.contains(study_, Qt::CaseInsensitive); }
};
