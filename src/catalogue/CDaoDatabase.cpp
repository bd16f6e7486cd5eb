#include "catalogue/CDaoDatabase.h"

#include "catalogue/CatalogueImport.h"
#include "catalogue/ImportGuard.h"
#include "diagnostics/errors.h"
#include "platform/system/Paths.h"

using namespace Qt::StringLiterals;

CDaoDatabase gDatabase;

QString CDaoDatabase::Database() const {
    return path_.isEmpty() ? u"Keine Datenbankdatei ausgewählt"_s : path_;
}

bool CDaoDatabase::TableExist(const QString& name) const {
    const ProcedureScope scope(u"[CDatabase.TableExist]"_s);
    bool found = false;
    attempt(
        [&] {
            if (!current_)
                dao::raiseRuntimeError(91);
            dao::TableDefs& tables = current_->TableDefs();
            const int count = tables.Count();
            for (int i = 0; i < count && !found; ++i)
                found = tables.Item(i)->Name().compare(name, Qt::CaseInsensitive) == 0;
        },
        reportProgramError);
    return found;
}

void CDaoDatabase::CloseDatabase() {
    const ProcedureScope scope(u"[CDatabase.CloseDatabase]"_s);
    m_CloseDatabase();
}

void CDaoDatabase::OpenQXDatabase(bool readOnly) {
    const ProcedureScope scope(u"[CDatabase.OpenQXDatabase]"_s);
    // Closing empties the path, which by now is that of the catalogue to be opened.
    const QString path = path_;
    m_CloseDatabase();
    path_ = path;
    connect_ = path_;
    try {
        removeLeftovers(connect_);
    } catch (const ImportError& error) {
        leftovers_ = error.text(); // what is there can be read all the same
    }
    attempt([&] {
        current_ = CurrentWorkspace().OpenDatabase(Paths::resolved(connect_), false, readOnly);
        state_ = 1;
    });
}

void CDaoDatabase::m_CloseDatabase() {
    leftovers_.clear();
    if (!current_ || state_ != 1)
        return;
    attempt([&] { current_->Close(); }, reportProgramError);
    current_.reset();
    state_ = 0;
    path_.clear();
}
