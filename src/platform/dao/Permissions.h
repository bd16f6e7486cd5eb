#pragma once

struct sqlite3;

namespace dao {

/// Lets a connection, with all files that it attaches, do only what this engine's own statements ask for, and keeps
/// what one value or one statement may take within bounds: text of a stranger's file, which SQLite reads as part of
/// what the file declares, gets no further than they do.
void restrictConnection(sqlite3* connection);

} // namespace dao
