#pragma once

#include <QTextStream>

namespace corrieval {
class CCorrievalDoc;
}

namespace corrieval::cli {

// Prints the object tree of a document, one object per line, indented by depth: the class
// name, the rectangle and the fields that matter for that class.
void PrintTree(const CCorrievalDoc& doc, QTextStream& out);

} // namespace corrieval::cli
