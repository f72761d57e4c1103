#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "files.h"
#include "captured.h"
#include "pscacheiterator.h"
#include "pscstream.h"
#include "psenum.h"
#include "psfileiterator.h"
#include "psistream.h"
#include "psostream.h"
#include "psstepiterator.h"

namespace {

enum Hint { hintNone, hintSmall, hintSmart, hintLarge, hintUnnamed };

// The texts of at most limit values, as an iteration gives them.
std::string valuesOf(psParameter& parameter, int limit = 20) {
    std::string text;
    for (bool more = parameter.firstValue(); more && limit-- > 0; more = parameter.nextValue()) {
        text += text.empty() ? "" : " ";
        text += parameter.valueString().c_str();
    }
    return text;
}

// The message with which the parameter rejects a text; empty when it takes it.
std::string rejection(psParameter& parameter, const char* text) {
    try {
        parameter.translate(text);
        return "";
    } catch (const psException& e) {
        return e.msg();
    }
}

void addHints(psMapIterator<Hint>& hint) {
    hint.init(hintNone, "Hint");
    hint.resetMap();
    hint.addMap("None", hintNone);
    hint.addMap("Small", hintSmall);
    hint.addMap("SMART", hintSmart);
    hint.addMap("Large", hintLarge);
}

} // namespace

TEST(StepIterator, TextGivesItsValues) {
    const struct {
        const char *text, *values;
    } cases[] = {{"16;1024;*2", "16 32 64 128 256 512 1024"},
                 {"1;6;+2", "1 3 5"},
                 {"10;1;-3", "10 7 4 1"},
                 {"1;10;--3", "1 4 7 10"},
                 {"-1;-8;*2", "-1 -2 -4 -8"},
                 {"7;7;+1", "7"},
                 {" 3 ;9  +3", "3 6 9"},
                 {"0x10;0X40;*2", "16 32 64"},
                 {"1;2;3", "1 2 3"},
                 {"9", "9"},
                 {"10;1;+0", "10 10 10 10 10 10 10 10 10 10 10 10 10 10 10 10 10 10 10 10"},
                 {"2147483600;2147483647;+40", "2147483600 2147483640"},
                 {"1073741824;2147483647;*2", "1073741824"},
                 {"1000000000;2147483647;*2000000000", "1000000000"},
                 {"-2147483600;-2147483648;-40", "-2147483600 -2147483640"},
                 {"-1073741824;-2147483648;*2", "-1073741824 -2147483648"}};
    for (const auto& c : cases) {
        psStepIterator<int> length;
        length.translate(c.text);
        EXPECT_EQ(valuesOf(length), c.values) << c.text;
        EXPECT_EQ(valuesOf(length), c.values) << "again: " << c.text;
    }
}

TEST(StepIterator, RejectionNamesTheFaultAndKeepsTheProgression) {
    struct Case {
        const char* text;
        std::string message;
    };
    std::vector<Case> cases = {
        {"x;10;+1", "--NTK. Exception: Invalid first value = x"},
        {"1;y;+1", "--NTK. Exception: Invalid last value = y"},
        {"1;10;+z", "--NTK. Exception: Invalid step = z"},
        {"10;1;+", "--NTK. Exception: Invalid step = "},
        {"1;2;3;*4", "--NTK. Exception: Invalid value of Length = *4"},
        {"1;two", "--NTK. Exception: Invalid value of Length = two"},
        {"16k", "--NTK. Exception: Invalid value of Length = 16k"},
        {"4294967300", "--NTK. Exception: Invalid value of Length = 4294967300"},
        {"", "--NTK. Signal: Empty iterator definition"},
        {";;", "--NTK. Signal: Empty iterator definition"}};
    for (const char* const text :
         {"1;10;-3", "1;10;-1", "10;1;+3", "1;10;+0", "1;10;+-1", "10;1;-0", "7;7;-1", "1;100;*1",
          "0;100;*2", "-8;100;*2", "8;1;*2", "8;-8;*2", "-8;-1;*2", "-3;-3;*2"})
        cases.push_back({text, "--NTK. Exception: Conflict between iterator limits and operation"});
    for (const auto& c : cases) {
        psStepIterator<int> length;
        length.init(5, 20, 5, PS_STEP_ADD, "Length");
        EXPECT_EQ(rejection(length, c.text), c.message) << c.text;
        EXPECT_EQ(valuesOf(length), "5 10 15 20") << c.text;
    }
    psStepIterator<int> length;
    EXPECT_THROW(length.init(1, 100, 1, PS_STEP_MUL, "Length"), psException);
    EXPECT_EQ(valuesOf(length), "");
}

TEST(StepIterator, DescribesItselfInBothModes) {
    const struct {
        const char *text, *defaultString, *description;
    } cases[] = {{"16;64;*2", "16; 64; *2", "for (Length = 16; Length <= 64; Length *= 2)"},
                 {"10;1;-3", "10; 1; -3", "for (Length = 10; Length >= 1; Length -= 3)"},
                 {"8;9", "8; 9", "Length = 8; 9"}};
    for (const auto& c : cases) {
        psStepIterator<int> length(1, "Length", "number of bytes");
        length.translate(c.text);
        EXPECT_STREQ(length.defaultString().c_str(), c.defaultString);
        EXPECT_STREQ(length.description().c_str(), c.description);
        EXPECT_STREQ(length.prompt().c_str(), "for number of bytes");
        EXPECT_EQ(rejection(length, length.defaultString().c_str()), "");
    }
}

TEST(Iteration, HasValueFollowsIt) {
    psIterator<int> list(0, "list");
    list.translate("4;5");
    psStepIterator<int> steps;
    steps.init(4, 5, 1, PS_STEP_ADD, "steps");
    for (psIterator<int>* const p : {&list, static_cast<psIterator<int>*>(&steps)}) {
        EXPECT_FALSE(p->hasValue());
        EXPECT_EQ(p->value(), 4) << "before the first step";
        EXPECT_TRUE(p->nextValue() && p->hasValue());
        EXPECT_EQ(p->value(), 4);
        EXPECT_TRUE(p->nextValue());
        EXPECT_FALSE(p->nextValue() || p->hasValue());
        EXPECT_FALSE(p->nextValue()) << "stays at its end";
        EXPECT_EQ(p->value(), 5);
        p->setValue(9);
        p->reset();
        EXPECT_FALSE(p->hasValue());
        EXPECT_EQ(p->value(), 4);
    }
}

TEST(Iteration, DefaultIsIteratedOnlyWhileItIsAlone) {
    psIterator<int> number(3, "number");
    EXPECT_EQ(valuesOf(number), "3");
    number.add(7);
    number.add(8);
    EXPECT_EQ(valuesOf(number), "7 8");
    number.init(1, "number");
    EXPECT_EQ(valuesOf(number), "1");
    number.translate("5");
    number.add(6);
    EXPECT_EQ(valuesOf(number), "5 6");

    psStepIterator<int> steps;
    steps.init(1, 8, 2, PS_STEP_MUL, "steps");
    steps.init(5, "steps"); // a list again
    EXPECT_EQ(valuesOf(steps), "5");
    EXPECT_STREQ(steps.description().c_str(), "steps = 5");

    psIterator<int> none;
    EXPECT_FALSE(none.firstValue());
    psStepIterator<int> undefined;
    EXPECT_FALSE(undefined.firstValue());
}

TEST(SingleValue, StandsOnceAndKeepsItsText) {
    psDefault<int> loops(10, "NumLoops");
    EXPECT_EQ(valuesOf(loops), "10");
    loops.translate(" 25 ");
    EXPECT_EQ(valuesOf(loops), "25");
    EXPECT_STREQ(loops.description().c_str(), "NumLoops = 25");
    EXPECT_EQ(rejection(loops, "many"), "--NTK. Exception: Invalid value of NumLoops = many");
    loops.translate(""); // an empty option value keeps the default
    EXPECT_EQ(loops.value(), 25);
    loops.setValue(99);
    EXPECT_EQ(valuesOf(loops), "25");

    psMapDefault<int> method(3, "Method");
    method.addMap("Auto", 0);
    method.addMap("Iterative", 3);
    EXPECT_STREQ(method.prompt().c_str(), "Method {Auto|Iterative}");
    EXPECT_STREQ(method.valueString().c_str(), "Iterative");
    method.translate("aut");
    EXPECT_EQ(method.value(), 0);

    psDefault_NSC<bool> flag(true, "Flag");
    flag.translate("no");
    EXPECT_EQ(valuesOf(flag), "no");
    EXPECT_NE(rejection(flag, "maybe"), "");
}

TEST(MapIterator, NamesMayBeAbbreviated) {
    const std::pair<const char*, const char*> cases[] = {{"none", "None"},
                                                         {"S", "Small"},
                                                         {"sma", "Small"},
                                                         {"smar", "SMART"},
                                                         {"LARGE; s", "Large Small"},
                                                         {"l;n;l", "Large None Large"}};
    for (const auto& [text, values] : cases) {
        psMapIterator<Hint> hint;
        addHints(hint);
        hint.translate(text);
        EXPECT_EQ(valuesOf(hint), values) << text;
    }
    psMapIterator<Hint> hint;
    addHints(hint);
    for (const char* const text : {"Smaller", "x", "s;x"})
        EXPECT_NE(rejection(hint, text), "") << text;
    EXPECT_EQ(valuesOf(hint), "None");
    EXPECT_STREQ(hint.valueToString(hintUnnamed).c_str(), "");
    EXPECT_STREQ(hint.prompt().c_str(), "Hint");
}

TEST(MapIterator, NumbersMayHaveNames) {
    psMapIterator<int> level(3, "Level");
    level.addMap("Fast", 1);
    level.addMap("Best", 9);
    EXPECT_EQ(rejection(level, "best;f"), "");
    EXPECT_EQ(valuesOf(level), "Best Fast");
    for (const std::string text : {"1", "9", "Fast1", "0x1"}) {
        EXPECT_EQ(rejection(level, text.c_str()),
                  "--NTK. Exception: Invalid value of Level = " + text);
    }
    EXPECT_EQ(valuesOf(level), "Best Fast");
}

TEST(MapIterator, ValidationListNarrowsTheNames) {
    psMapIterator<Hint> hint;
    addHints(hint);
    psList<Hint> admitted;
    admitted.append(hintNone);
    admitted.append(hintLarge);
    hint.addValidation(&admitted);
    EXPECT_STREQ(hint.prompt().c_str(), "Hint {None|Large}");
    EXPECT_EQ(rejection(hint, "Large;Small"), "--NTK. Exception: Invalid value of Hint = Small");
    EXPECT_EQ(rejection(hint, "L"), "");
    hint.addValidation(hintSmall);
    EXPECT_EQ(rejection(hint, "Large;Small"), "");
    hint.initValidation(); // what is iterated now
    EXPECT_STREQ(hint.validString().c_str(), "Large|Small");
    hint.resetValidation();
    EXPECT_EQ(rejection(hint, "None;SMART"), "");
}

TEST(Output, TextHasNameAndValue) {
    psDefault<int> named(4, "Level"), unnamed(5);
    const Captured printed;
    g_ostrm << PS_NORMAL;
    named.toOStream(g_ostrm);
    unnamed.toOStream(g_ostrm);
    g_ostrm << PS_END;
    EXPECT_EQ(printed.text(), "Level=4 ");
}

TEST(Output, CellShowsValueQuotesOrDeprecation) {
    psDefault_NSC<psString> name("book1", "File");
    name.addDeprecated("pic", "old input");
    name.addDeprecated("book2", "older input");
    name.addDeprecated("book2", "the first text stands");
    const struct {
        const char* value;
        bool quoted, deprecated;
        const char* cell;
    } cases[] = {{"book1", false, false, "book1"},     {"book1", true, false, " \"book1\""},
                 {"book1", false, true, "book1"},      {"book2", true, true, "older input"},
                 {"book2", true, false, " \"book2\""}, {"", true, false, ""}};
    for (const auto& c : cases) {
        name.setValue(c.value);
        name.setQuoted(c.quoted);
        name.setDeprecatedFlag(c.deprecated);
        psCStream table;
        name.toCStream(table);
        name.nameToCStream(table);
        psString cell, header;
        EXPECT_TRUE(table.getColm(0, cell) && table.getColm(1, header));
        EXPECT_STREQ(cell.c_str(), c.cell) << c.value << c.quoted << c.deprecated;
        EXPECT_STREQ(header.c_str(), "File");
    }
}

TEST(Output, CellGoesToTheColumnOfTheParameter) {
    struct Placed : psDefault<int> {
        using psDefault<int>::psDefault;
        int colmIndex() const override { return column; }
        int column = 0;
    } placed(8, "placed");
    for (const int column : {0, 3}) {
        placed.column = column;
        psCStream table;
        table << "x";
        psString cell;
        placed.toCStream(table);
        table.getColm(column, cell);
        EXPECT_STREQ(cell.c_str(), "8");
        placed.nameToCStream(table);
        table.getColm(column, cell);
        EXPECT_STREQ(cell.c_str(), "placed");
        EXPECT_EQ(table.nextColm(), 1);
    }
}

TEST(Input, TakesGoodDefinitionsAndNamesBadOnes) {
    const struct {
        const char *preset, *console; // null: none
        bool inUse, taken;
        const char *values, *printed; // printed: a part of it
    } cases[] = {
        {"4;8", nullptr, true, true, "4 8", ""},
        {"4;8", nullptr, false, false, "1 2", ""},
        {"4;x", nullptr, true, false, "1 2",
         "--NTK. Exception: Invalid value of Len = x (Len = 4;x is rejected; keeping 1; 2)\n"},
        {"4;x", "6\n", true, false, "1 2", "= x"},
        {nullptr, nullptr, true, false, "1 2", ""},
        {nullptr, "7\n", true, true, "7", ""},
        {nullptr, "\n", true, false, "1 2", ""},
        {nullptr, "x\n3;1;+1\n9;1;-4\n", true, true, "9 5 1", "Conflict"},
        {nullptr, "x\n", true, false, "1 2", "Invalid value of Len = x"}};
    for (const auto& c : cases) {
        psStepIterator<int> length;
        length.setName("Len");
        length.translate("1;2");
        length.setInUse(c.inUse);
        psIStream in;
        FILE* console = nullptr;
        if (c.preset)
            in.preset("Len", c.preset);
        if (c.console) {
            console = fmemopen(const_cast<char*>(c.console), std::strlen(c.console), "r");
            in.setIStream(console);
            in.setAsking(true);
        }
        const Captured printed;
        EXPECT_EQ(length.fromIStream(in), c.taken);
        EXPECT_EQ(valuesOf(length), c.values);
        EXPECT_TRUE(has(printed.text(), c.printed));
        if (console)
            fclose(console);
    }
}

TEST(FileIterator, ReadsWhatTheLengthRuleAdmits) {
    psFileIterator file;
    file.init("", "CodeFile");
    file.add(writeFile(testPath("code"), std::string(9999, 'c') + "\n").c_str());
    ASSERT_TRUE(file.firstValue());
    const struct {
        int length, divisor, got;
    } cases[] = {{16384, 0, 10000}, {32768, 2, 0},   {20000, 2, 0}, {19999, 2, 10000},
                 {10000, 2, 10000}, {4096, 2, 4096}, {100, 3, 100}, {1000000, 0, 10000}};
    for (const auto& c : cases) {
        std::vector<char> buffer(static_cast<size_t>(c.length) + 1, '?');
        EXPECT_EQ(file.readData(buffer.data(), c.length, c.divisor), c.got) << c.length;
        EXPECT_EQ(buffer.back(), '?') << c.length;
        EXPECT_EQ(buffer.front(), 'c') << c.length;
    }
    file.init("", "CodeFile");
    file.add("no such file");
    const Captured printed;
    ASSERT_TRUE(file.firstValue());
    char byte = '?';
    EXPECT_EQ(file.readData(&byte, 1, 0), 0);
    EXPECT_EQ(printed.text(), "-- Can't open file no such file to read\n");
}

// A shared parameter is read for the session and again for each test.
TEST(FromInput, ARejectedPresetIsReportedOnce) {
    const std::pair<const char*, const char*> cases[] = {
        {"x", "Exception: Invalid value of Len = x"},
        {" ; ", "Exception: Invalid value of Len = "},
        {"4096; ;16384", "Exception: Invalid value of Len = "}};
    for (const auto& [preset, reason] : cases) {
        const Captured log;
        psIStream in;
        in.preset("Len", preset);
        psIterator<int> len(1, "Len");
        EXPECT_FALSE(len.fromIStream(in));
        EXPECT_FALSE(len.fromIStream(in));
        EXPECT_EQ(log.text(), std::string("--NTK. ") + reason + " (Len = " + preset +
                                  " is rejected; keeping 1)\n");
    }
}

// As a settings file has it that was written with the defaults: nothing to report.
TEST(FromInput, AnEmptyDefinitionComesBackEmpty) {
    const Captured log;
    psIStream in;
    in.preset("File", "");
    psFileIterator file;
    file.init("", "File");
    EXPECT_FALSE(file.fromIStream(in));
    EXPECT_EQ(log.text(), "");
}

TEST(Definitions, AreKeptWhole) {
    psDefault<double> number(0.123456, "Number");
    psIterator<int> alone(5, "Alone"), several(5, "Several");
    several.add(6);
    several.add(7);
    psStepIterator<int> empty, steps;
    steps.init(16, 64, 2, PS_STEP_MUL, "Steps");
    psMapIterator<Hint> hint;
    addHints(hint);
    hint.add(hintUnnamed); // has no text
    psFileIterator files("a;b", "Files");
    psCacheIteratorInt cache(several);
    const struct {
        psParameter& parm;
        const char *text, *values;
    } cases[] = {{number, "2", "0.123"},       {alone, "8;9", "5"},
                 {several, "8;9", "6 7"},      {empty, "1", ""},
                 {steps, "1;2;3", "16 32 64"}, {steps, "1;9;+4", "16 32 64"},
                 {hint, "Large", ""},          {files, "c", "a;b"}};
    for (const auto& c : cases) {
        const auto restore = c.parm.keepDefinition();
        c.parm.translate(c.text);
        EXPECT_NE(valuesOf(c.parm), c.values) << c.text;
        restore();
        EXPECT_EQ(valuesOf(c.parm), c.values) << c.text;
    }
    EXPECT_EQ(number.value(), 0.123456);
    const auto restore = cache.keepDefinition();
    several.translate("8");
    restore();
    EXPECT_EQ(valuesOf(several), "6 7");
    alone.add(1); // takes the place of a default, also after its return
    EXPECT_EQ(valuesOf(alone), "1");
}
