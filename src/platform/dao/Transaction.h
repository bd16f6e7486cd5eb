#pragma once

#include "platform/dao/DBEngine.h"

namespace dao {

/// A transaction that rolls back unless it is committed.
class Transaction {
public:
    explicit Transaction(Workspace& workspace = DBEngine::instance().Workspaces(0)) : workspace_(workspace) {
        workspace_.BeginTrans();
    }
    ~Transaction() {
        if (!open_)
            return;
        // The failure that led here is the one to be reported.
        const Errors before = errorList();
        try {
            workspace_.Rollback();
        } catch (const Error&) {
            // A commit that failed has ended it, or the files roll back when they are next opened.
        }
        errorList() = before;
    }
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;

    /// @throws Error as Workspace::CommitTrans()
    void commit() {
        workspace_.CommitTrans();
        open_ = false;
    }

private:
    Workspace& workspace_;
    bool open_ = true;
};

} // namespace dao
