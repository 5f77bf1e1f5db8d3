#include "writeTables.h"

#include "writeCsv.h"
#include "writeNumbers.h"

namespace MoxTool {

void writeTables(std::ostream& out, const std::vector<NumberTable>& tables, NumberFormat format,
                 bool header) {
    if (format == NumberFormat::Csv) {
        writeCsv(out, tables, header);
    } else {
        writeNumbers(out, tables.front(), format);
    }
}

} // namespace MoxTool
