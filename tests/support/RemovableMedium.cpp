#include "support/RemovableMedium.h"

#include <list>
#include <sqlite3.h>

namespace {

/// What an open file of the medium answers with, and what it would answer with otherwise.
struct Methods {
    sqlite3_io_methods own; ///< first, so that an open file leads here
    const sqlite3_io_methods* of;
};

// Open files keep pointing here when the medium is no more.
QByteArray folderOfMedium;
bool isOut = false;
std::list<Methods> methods;
sqlite3_vfs* machine = nullptr;
sqlite3_vfs drive;

int read(sqlite3_file* file, void* buffer, int bytes, sqlite3_int64 offset) {
    if (isOut)
        return SQLITE_IOERR_READ;
    return reinterpret_cast<const Methods*>(file->pMethods)->of->xRead(file, buffer, bytes, offset);
}

int open(sqlite3_vfs*, const char* name, sqlite3_file* file, int flags, int* opened) {
    const int result = machine->xOpen(machine, name, file, flags, opened);
    if (result == SQLITE_OK && (flags & SQLITE_OPEN_MAIN_DB) != 0 && QByteArray(name).startsWith(folderOfMedium)) {
        Methods& its = methods.emplace_back(Methods{*file->pMethods, file->pMethods});
        its.own.xRead = read;
        file->pMethods = &its.own;
    }
    return result;
}

} // namespace

RemovableMedium::RemovableMedium(const QString& folder) {
    folderOfMedium = folder.toUtf8() + '/';
    isOut = false;
    machine = sqlite3_vfs_find(nullptr);
    drive = *machine;
    drive.zName = "drive";
    drive.xOpen = open;
    sqlite3_vfs_register(&drive, 1);
}

RemovableMedium::~RemovableMedium() {
    isOut = false;
    sqlite3_vfs_unregister(&drive);
}

void RemovableMedium::takeOut() {
    isOut = true;
}

void RemovableMedium::putIn() {
    isOut = false;
}
