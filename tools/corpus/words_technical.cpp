#include "vocabulary.h"

namespace corpus {

namespace {

constexpr Rule kRules[] = {
    {"tnoun", Split::OpenWords, kBroad, R"(
        system program number time data/data method user problem value machine result set table
        file process case memory line process signal error input output rate order state point
        model figure function message network structure level form part section sequence list
        record word bit byte disk page block buffer queue clock counter register channel terminal
        printer display screen keyboard command name character string symbol pattern tree node
        branch leaf/leaves root path graph edge cycle stack array matrix/matrices vector
        index/indices key entry field format protocol packet frame header link route gateway host
        server client task job schedule deadline interrupt device driver port cable circuit voltage
        current pulse wave frequency amplitude phase filter spectrum/spectra noise sample interval
        window threshold estimate measurement observation instrument sensor gauge scale unit
        calibration accuracy precision tolerance average variance distribution density probability
        hypothesis/hypotheses experiment trial survey station tide river reservoir dam flood
        drainage rainfall pressure temperature humidity velocity current depth height slope chart
        contour projection coordinate boundary region area volume surface layer profile curve
        equation constant variable parameter coefficient derivative integral polynomial series
        limit approximation algorithm procedure subroutine module interface library compiler
        interpreter assembler loader editor debugger simulator translator parser scanner grammar
        language statement expression operator operand identifier declaration scope type pointer
        reference loop iteration recursion condition assertion proof theorem lemma rule constraint
        requirement agreement design implementation test fault failure recovery backup restart
        checkpoint transaction lock semaphore monitor mutex event trigger alarm report listing
        document paragraph sentence heading margin font glyph column row cell label caption diagram
        drawing sketch image pixel raster plotter camera lens mirror beam laser detector receiver
        transmitter antenna satellite orbit spacecraft/spacecraft balloon aircraft/aircraft engine
        turbine pump valve bearing shaft gear spring lever motor battery generator transformer
        relay switch fuse lamp budget cost price estimate market industry company customer supplier
        contract warehouse inventory invoice account balance payment salary tax staff office
        department committee meeting agenda proposal policy decision strategy objective resource
        capacity demand supply throughput delay latency bottleneck load utilisation efficiency
        performance improvement)"},
    {"tabstract", Split::OpenWords, kBroad, R"(
        information use number knowledge control analysis processing storage access communication
        computation representation description definition interpretation classification selection
        comparison evaluation optimisation organisation presentation transmission reception
        detection correction compression expansion encryption authentication security privacy
        reliability availability maintenance simulation prediction estimation interpolation
        extrapolation smoothing filtering sampling quantisation modulation synchronisation
        scheduling allocation sharing protection addressing mapping sorting searching matching
        hashing indexing updating editing formatting printing typesetting drawing planning learning
        reasoning inference deduction abstraction generality simplicity complexity consistency
        completeness correctness redundancy concurrency parallelism portability compatibility
        flexibility modularity documentation training education research development manufacturing
        production distribution transport navigation surveying mapping agriculture irrigation
        meteorology hydrology acoustics optics electronics mechanics thermodynamics)"},
    {"tverb", Split::Words, kZipf, R"(
        use give/gave/given make/made/made find/found/found show/showed/shown need describe produce
        provide contain require represent store send/sent/sent read/read/read write/wrote/written
        change choose/chose/chosen define determine compute calculate generate obtain include allow
        handle reduce increase improve affect control measure observe record transmit/transmitted
        receive process analyse examine compare test check detect correct remove insert replace
        update modify extend combine divide separate select sort search match count add subtract
        multiply scale round estimate approximate predict simulate model implement design
        build/built/built construct install replace repair maintain operate run/ran/run start stop
        suspend resume delay schedule allocate release reserve share protect lock map translate
        interpret compile load link execute call invoke display print draw/drew/drawn plot label
        mark identify recognise classify organise arrange index encode decode compress expand
        filter smooth sample quantise convert transform rotate shift/shifted invert reverse copy
        move delete rename open close mount format edit document specify verify prove assume
        consider discuss explain illustrate demonstrate suggest propose recommend)"},
    {"tadj", Split::Words, kBroad, R"(
        different new same large small simple first second important possible general particular
        main single whole local remote common special normal standard original final initial
        current previous next early late high low long short fast slow complete partial exact
        approximate correct incorrect available necessary sufficient useful practical theoretical
        experimental numerical digital analogue electronic mechanical electrical optical magnetic
        acoustic automatic manual interactive sequential parallel concurrent distributed central
        global internal external physical logical virtual real abstract concrete formal informal
        direct indirect linear non-linear random regular irregular periodic constant variable fixed
        dynamic static adaptive stable unstable robust reliable efficient expensive cheap cautious
        complex complicated elementary basic advanced modern conventional traditional alternative
        typical unusual obvious subtle serious minor major critical crucial significant negligible
        relative absolute maximum minimum average mean statistical empirical historical recent
        permanent temporary active passive primary secondary independent dependent separate
        adjacent successive consecutive corresponding equivalent similar identical appropriate
        suitable reasonable acceptable satisfactory adequate limited unlimited finite infinite
        continuous discrete smooth sharp uniform hierarchical recursive symmetric orthogonal
        portable compatible flexible modular structured hand-written real-time high-level low-level
        large-scale well-known long-term so-called user-defined machine-independent)"},
    {"tadv", Split::Words, kZipf, R"(
        usually often only also generally easily simply directly quickly immediately normally
        frequently rarely sometimes always never currently recently typically automatically
        manually separately independently explicitly implicitly exactly approximately roughly
        largely mainly partly completely entirely correctly incorrectly efficiently reliably
        periodically occasionally subsequently eventually finally initially previously clearly
        obviously apparently presumably fortunately unfortunately deliberately carefully)"},
    {"tfield", Split::Lines, kZipf, R"(
        $tabstract
        $tadj $tabstract
        $tnoun $tabstract
        the $tabstract of $(tnoun:pl)
        $tadj $(tnoun:pl)
        $tnoun $(tnoun:pl)
        $tadj $tnoun $tabstract)"},
};

} // namespace

RuleBook technicalWords() {
    return kRules;
}

} // namespace corpus
