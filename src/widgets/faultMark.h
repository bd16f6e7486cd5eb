#pragma once

class QLineEdit;

/// Marks a field whose text names nothing, in its ground and by a sign at its end, or takes the mark away. The words
/// belong beside it: neither a colour nor a sign says what is wrong.
void markFault(QLineEdit& field, bool wrong);
