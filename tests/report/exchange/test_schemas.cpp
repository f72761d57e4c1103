// The forms that the readers describe, as JSON schemas.
#include <limits>

#include "exchange.h"
#include "handmade.h"
#include "reader.h"

namespace report {

namespace {

class ExchangeSchemas : public Reader {
protected:
    void SetUp() override {
        if (!hasPython("jsonschema")) {
            GTEST_SKIP() << "the schemas cannot be checked: apt-get install python3-jsonschema";
        }
    }

    // Numbers that JSON does not have are refused, too.
    void expectValid(const std::string& schema, const std::string& text) const {
        const std::string program =
            write("validate.py", "import json, jsonschema, sys\n"
                                 "schema, text = (json.load(open(name, encoding='utf-8'),\n"
                                 "                          parse_constant=sys.exit)\n"
                                 "                for name in sys.argv[1:])\n"
                                 "jsonschema.Draft7Validator(schema).validate(text)\n");
        const Answer answer = python(program + ' ' + NTK_EXCHANGE_SCHEMAS "/" + schema + ".json " +
                                     write(schema, text));
        EXPECT_EQ(answer.status, 0) << schema << '\n' << text << answer.text;
    }
};

Report manyKinds() {
    constexpr double none = std::numeric_limits<double>::quiet_NaN();
    constexpr double infinite = std::numeric_limits<double>::infinity();
    Handmade made;
    for (const char* name : {"a", "\"b\"\n", "\xFF", "<img src=x onerror=alert(1)>", ""}) {
        made.add("ntksFirst_8u", {{"CodeFile", name}}, {4, none, 1e-9, infinite, 1e12}).ratio = 2;
    }
    made.add("ntksSame_8u", {}, {5, 5, 5}).bytesPerUnit = none;
    made.add("ntksNone_8u", {}, {none}).ratio = infinite;
    made.addFailed("ntksFailed_8u", {}, "EXCPTFAIL", "signal \x01");
    made.addGroup("without facts");
    made.run().facts = {};
    made.add("ntksFirst_8u", {}, {4});
    return made.report;
}

} // namespace

TEST_F(ExchangeSchemas, AreKept) {
    for (const Report& report : {manyKinds(), Report{}}) {
        expectValid("googlebenchmark", googleBenchmarkText(report));
        expectValid("bencher", bencherText(report));
        expectValid("smallerisbetter", smallerIsBetterText(report));
    }
}

} // namespace report
