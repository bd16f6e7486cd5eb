#include "platform/dao/Error.h"

#include <array>

using namespace Qt::StringLiterals;

namespace dao {

namespace {

struct Description {
    int number;
    const char* text; ///< "|" is where the name goes
};

constexpr std::array runtimeDescriptions = {
    Description{5, "Invalid procedure call or argument"},
    Description{6, "Overflow"},
    Description{7, "Out of memory"},
    Description{9, "Subscript out of range"},
    Description{11, "Division by zero"},
    Description{13, "Type mismatch"},
    Description{52, "Bad file name or number"},
    Description{53, "File not found"},
    Description{70, "Permission denied"},
    Description{75, "Path/File access error"},
    Description{76, "Path not found"},
    Description{91, "Object variable or With block variable not set"},
    Description{93, "Invalid pattern string"},
    Description{94, "Invalid use of Null"},
};

constexpr std::array engineDescriptions = {
    Description{3010, "Table '|' already exists."},
    Description{3011, "The database engine could not find the object '|'.  Make sure the object exists and that you "
                      "spell its name and the path name correctly."},
    Description{3012, "Object '|' already exists."},
    Description{3020, "Update or CancelUpdate without AddNew or Edit."},
    Description{3021, "No current record."},
    Description{3022, "The changes you requested to the table were not successful because they would create "
                      "duplicate values in the index, primary key, or relationship.  Change the data in the field "
                      "or fields that contain duplicate data, remove the index, or redefine the index to permit "
                      "duplicate entries and try again."},
    Description{3024, "Could not find file '|'."},
    Description{3026, "Not enough space on disk."},
    Description{3027, "Cannot update.  Database or object is read-only."},
    Description{3034, "You tried to commit or rollback a transaction without first beginning a transaction."},
    Description{3035, "System resource exceeded."},
    Description{3043, "Disk or network error."},
    Description{3044, "'|' is not a valid path.  Make sure that the path name is spelled correctly and that you are "
                      "connected to the server on which the file resides."},
    Description{3048, "Cannot open any more databases."},
    Description{3049, "Cannot open database '|'.  It may not be a database that your application recognizes, or the "
                      "file may be corrupt."},
    Description{3050, "Could not lock file '|'."},
    Description{3051, "The database engine cannot open the file '|'.  It is already opened exclusively by another "
                      "user, or you need permission to view its data."},
    Description{3059, "Operation canceled by user."},
    Description{3061, "Too few parameters. Expected 1. ('|')"},
    Description{3062, "Duplicate output alias '|'."},
    Description{3063, "Duplicate output destination '|'."},
    Description{3065, "Cannot execute a select query."},
    Description{3066, "Query must have at least one destination field."},
    Description{3070, "The database engine does not recognize '|' as a valid field name or expression."},
    Description{3075, "Syntax error in query expression: |"},
    Description{3077, "Syntax error in expression: |"},
    Description{3078, "The database engine cannot find the input table or query '|'.  Make sure it exists and that "
                      "its name is spelled correctly."},
    Description{3079, "The specified field '|' could refer to more than one table listed in the FROM clause of your "
                      "SQL statement."},
    Description{3081, "Cannot join more than one table with the same name ('|')."},
    Description{3085, "Undefined function '|' in expression."},
    Description{3093, "ORDER BY clause conflicts with DISTINCT."},
    Description{3096, "Cannot have aggregate function here: '|'."},
    Description{3102, "Circular reference caused by '|'."},
    Description{3122, "You tried to execute a query that does not include the specified expression '|' as part of an "
                      "aggregate function."},
    Description{3125, "'|' is not a valid name.  Make sure that it does not include invalid characters or "
                      "punctuation and that it is not too long."},
    Description{3129, "Invalid SQL statement; expected 'DELETE', 'INSERT', 'SELECT', or 'UPDATE'."},
    Description{3159, "Not a valid bookmark."},
    Description{3163, "The field '|' is too small to accept the amount of data you attempted to add.  Try inserting "
                      "or pasting less data."},
    Description{3167, "Record is deleted."},
    Description{3170, "Could not find installable ISAM. ('|')"},
    Description{3190, "Too many fields defined."},
    Description{3191, "Cannot define field '|' more than once."},
    Description{3197,
                "The database engine stopped the process because you and another user are attempting to change the "
                "same data at the same time ('|')."},
    Description{3204, "Database '|' already exists."},
    Description{3219, "Invalid operation."},
    Description{3246, "Operation not supported in transactions."},
    Description{3251, "Operation is not supported for this type of object."},
    Description{3260, "Could not update; currently locked by another process ('|')."},
    Description{3264, "No field defined; cannot append the table '|'."},
    Description{3265, "Item not found in this collection: '|'."},
    Description{3274, "External table is not in the expected format: |."},
    Description{3306, "A subquery here can return only one field."},
    Description{3307, "The number of columns in the two selected tables or queries of a union query do not match."},
    Description{3314, "The field '|' cannot contain a Null value because the Required property for this field is set "
                      "to True.  Enter a value in this field."},
    Description{3317, "One or more values are prohibited by the validation rule '|'."},
    Description{3343, "Unrecognized database format '|'."},
    Description{3346, "Number of query values and destination fields are not the same."},
    Description{3351, "The ORDER BY expression '|' includes fields that are not selected by the query."},
    Description{3360, "Query is too complex: '|'."},
    Description{3420, "Object invalid or no longer set."},
    Description{3421, "Data type conversion error: '|'."},
    Description{3464, "Data type mismatch in criteria expression: |"},
};

template<size_t count>
const char* find(const std::array<Description, count>& table, int number) {
    for (const Description& entry : table) {
        if (entry.number == number) {
            return entry.text;
        }
    }
    return nullptr;
}

QString engineDescription(int number, const QString& detail) {
    const char* const found = find(engineDescriptions, number);
    if (found == nullptr) {
        const QString text = u"Reserved error (%1); there is no message for this error."_s.arg(number);
        return detail.isEmpty() ? text : text + u' ' + detail;
    }
    QString text = QString::fromLatin1(found);
    if (!detail.isEmpty()) {
        return text.replace(u'|', detail);
    }
    // A message without its name loses the marks around the place too.
    for (const QString& place : {u" ('|')"_s, u": '|'"_s, u": |"_s, u" '|'"_s, u"'|'"_s}) {
        text.remove(place);
    }
    return text;
}

} // namespace

Error::Error(int number, QString description, QString source, QString detail)
    : number_(number), description_(std::move(description)), source_(std::move(source)), detail_(std::move(detail)),
      utf8_(description_.toUtf8()) {}

namespace {

[[noreturn]] void raise(int number, const QString& description, const QString& detail) {
    const QString source = u"DAO.Database"_s;
    errorList().append({number, description, source});
    throw Error(number, description, source, detail);
}

} // namespace

Errors& errorList() {
    static Errors list;
    return list;
}

void raiseRuntimeError(int number) {
    const char* const text = find(runtimeDescriptions, number);
    throw Error(number, QString::fromLatin1(text != nullptr ? text : "Application-defined or object-defined error"));
}

void raiseEngineError(int number, const QString& detail) {
    raise(number, engineDescription(number, detail), detail);
}

void raiseEngineErrorInWords(int number, const QString& description) {
    raise(number, description, {});
}

} // namespace dao
