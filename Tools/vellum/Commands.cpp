#include "Commands.h"

SProgram DescribeProgram()
{
    return {
        .name = "vellum",
        .version = VELLUM_VERSION,
        .summary = "looks into documents of the Vellum library",
        .details = "Documents are binary, JSON or XML; which of them a file holds is told by its content. No command "
                   "needs to know the classes that a document was written from.\n"
                   "\n"
                   "A FILE may be \"-\", which is standard input. What takes more than a second is told on a terminal "
                   "while it lasts.",
        .exitStatus =
            "0 when all is in order, 1 when documents differ or one is damaged, 2 when that couldn't be found "
            "out: a wrong command line, a file that can't be read or written.",
        .commands = {MakeShow(), MakeCheck(), MakeDiff(), MakeConvert(), MakeDump(), MakeStat()},
    };
}
