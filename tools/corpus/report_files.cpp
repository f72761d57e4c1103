// book2, paper1, paper2: a textbook, a journal article and an essay as input for a formatter.
#include "files.h"
#include "report.h"

namespace corpus {

namespace {

constexpr std::size_t kSectionBytes = 5000;
constexpr int kSectionsPerChapter = 9;

constexpr ReportStyle kTextbook{
    .seed = 2,
    .widthColumns = 76,
    .flatnessPercent = 100,
    .topicSharePerMille = 400,
    .coinedPerMille = 10,
    .lineBreakPerMille = 500,
    .emphasisPerMille = 150,
    .paragraphCommand = ".pp",
};

constexpr ReportStyle kArticle{
    .seed = 3,
    .widthColumns = 66,
    .flatnessPercent = 100,
    .topicSharePerMille = 300,
    .coinedPerMille = 30,
    .lineBreakPerMille = 900,
    .emphasisPerMille = 250,
    .paragraphCommand = ".pp",
};

constexpr ReportStyle kEssay{
    .seed = 4,
    .widthColumns = 76,
    .flatnessPercent = 200,
    .topicSharePerMille = 150,
    .coinedPerMille = 40,
    .lineBreakPerMille = 900,
    .emphasisPerMille = 100,
    .paragraphCommand = ".pp",
};

// The lines before the first section: sizes and fonts, title, authors, summary.
void writeFront(Report& report, std::string_view title) {
    report.line(".pl 11i\n.po 1.2i\n.ll 6i\n.EQ\ndelim $$$$\n.EN\n.ft B\n.ps 14\n.sp 1i\n.ce");
    report.line(title);
    report.line(".ps 10\n.ft R\n.sp 2\n.ce\n$forename $initial $surname and $forename $surname");
    report.line(".sp 2\n.ce 3\nDepartment of $(tabstract:cap)\nThe University of $city");
    report.line("$month 198$d19\n.sp 0.5i\n.in 0.5i");
    report.line("$(statement:cap)\n$(statement:cap)\n$(statement:cap)\n.in 0\n.bp");
}

} // namespace

std::string makeTextbook(std::size_t sizeBytes) {
    Report report(kTextbook);
    for (int section = 0; report.sizeBytes() < sizeBytes; ++section) {
        if (section % kSectionsPerChapter == 0) {
            report.line(".CH \"" + std::to_string(section / kSectionsPerChapter + 1) +
                        "  $(theading:up)\"\n.ds RT \"$(theading:cap)\n.ds CX \"$tnoun");
        }
        const std::string number = std::to_string(section / kSectionsPerChapter + 1) + "." +
                                   std::to_string(section % kSectionsPerChapter + 1);
        report.section(".sh \"" + number + "  $(theading:cap)\"", kSectionBytes);
    }
    return report.finish(sizeBytes);
}

std::string makeArticle(std::size_t sizeBytes) {
    Report report(kArticle);
    writeFront(report, "HASHED QUEUES FOR THE MEASUREMENT OF TIDES");
    while (report.sizeBytes() < sizeBytes) {
        report.section(".sh \"$(theading:cap)\"", kSectionBytes);
    }
    return report.finish(sizeBytes);
}

std::string makeEssay(std::size_t sizeBytes) {
    Report report(kEssay);
    writeFront(report, "ON LEAVING MACHINES ALONE");
    while (report.sizeBytes() < sizeBytes) {
        report.section(".rh \"$(theading:cap).\"", kSectionBytes);
    }
    return report.finish(sizeBytes);
}

} // namespace corpus
