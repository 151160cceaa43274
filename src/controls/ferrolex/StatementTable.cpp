// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/ferrolex/StatementTable.h"

#include "values/Conversions.h"

#include <algorithm>
#include <array>

namespace ferrolex {
namespace {

struct Row
{
    const char* pattern;
    const char* road;
    unsigned traits;
};

// A pattern: words as they are written, <name:type> or <name:word=number|...> for an argument, [...] for what may be
// left out, with ?number behind the type for what an argument is then.
// A road, steps with ";" between them: "> word sum,sum" a command, whose sums are written one behind the other;
// "sweep end"; "pause sum"; otherwise a frame by its code, with F=, N1= to N4= and I= by sums, and text= by an argument
// or a text in single quotes. A sum has terms as name, 2*name, name.0 (the lowest bit) and 3. F may be 11 for the
// selector B. "numbers kept" repeats the numbers of the last frame of this code.
// The mask test is not answered, but may be followed by a stop: a picture of no known format behind it is answered and
// writes nothing.
constexpr std::array kRows{
    Row{"set start <f:frequency>", "> startfreq f", 0},
    Row{"set end <f:frequency>", "> endfreq f", 0},
    Row{"set points <n:points>", "> points n", 0},
    Row{"set period <t:period>", "> period 1000*t", 0},
    Row{"set phase <on:off=0|on=1>", "> phase on", 0},
    Row{"set direction <d:up=0|down=1|alternate=2>", "> sweepmode d", 0},
    Row{"set idle off", "> idlefreq 0", 0},
    Row{"set idle at start", "> idlefreq -1", 0},
    Row{"set idle <f:frequency>", "> idlefreq f", 0},
    Row{"set attenuation <code:attenuation>", "> atten code", 0},
    Row{"set repeat <on:off=0|on=1>", "> repeat on", 0},
    Row{"set samples <n:samples>", "> samples n", 0},
    Row{"set spacing <s:logarithmic=0|linear=1>", "> linear s", 0},
    Row{"set spot <f:frequency>", "> spotfreq f", 0},
    Row{"set pin <pin:impedance=1|amplitude=2> for pen <p:pen>", "> setpin pin,p", 0},
    Row{"sweep impedance", "> imptest; sweep end", Action::Measures | Action::Sweeps},
    Row{"sweep amplitude", "> amptest; sweep end", Action::Measures | Action::Sweeps},
    Row{"start impedance", "> imptest", Action::Measures | Action::StartsSweep},
    Row{"start amplitude", "> amptest", Action::Measures | Action::StartsSweep},
    Row{"wait for end", "sweep end", Action::Measures},
    Row{"stop sweep", "> y", 0},
    Row{"spot impedance <f:frequency> [for <t:duration?0.5>]", "> impspot f; pause t; > y", Action::Measures},
    Row{"spot amplitude <f:frequency> [for <t:duration?0.5>]", "> ampspot f; pause t; > y", Action::Measures},
    Row{"wait <t:duration>", "pause t", 0},
    Row{"new <kind:amplitude=0|impedance=1|reactance=2> graph <title:text>", "U F=kind text=title", Action::Opens},
    Row{"title <title:text>", "Z F=10 text=title", Action::NeedsGraph},
    Row{"ask for title", "Z F=10 text=''", Action::NeedsGraph},
    Row{"label <label:text>", "Z F=11 text=label", Action::NeedsGraph},
    Row{"label pen <p:pen> <label:text>", "Z F=p-1 text=label", Action::NeedsGraph},
    Row{"use pen <p:pen>", "a F=p", 0},
    Row{"save <name:file>", "b text=name", Action::Keeps | Action::NeedsGraph | Action::Saves},
    Row{"ask for name and save", "b text=''", Action::Keeps | Action::NeedsGraph | Action::Asks | Action::Saves},
    Row{"load <name:file>", "g text=name", Action::Loads | Action::Opens},
    Row{"close graph", "j", Action::NeedsGraph},
    Row{"follow zoom", "c", Action::NeedsGraph},
    Row{"export picture <name:file> as <format:jpeg=0|metafile=1|bitmap=2>", "i F=format text=name",
        Action::Keeps | Action::NeedsGraph},
    Row{"ask for name and export picture as <format:jpeg=0|metafile=1|bitmap=2>", "i F=format text=''",
        Action::Keeps | Action::NeedsGraph | Action::Asks},
    Row{"export options [pen <p:pen?1>] [phase <phase:off=0|on=1>] [subset <subset:off=0|on=1>] "
        "[precision <digits:digits>] [stamp <nostamp:off=1|on=0>] [header <header:off=0|on=1>] "
        "[separator <comma:tab=0|comma=1>] [lines <unix:windows=0|unix=1>]",
        "m F=p-1 N1=phase N2=subset N3=digits N4=nostamp I=header+2*comma+4*unix", 0},
    Row{"export pen <p:pen> to <name:file>", "m F=p-1 numbers kept; o text=name", Action::Keeps | Action::NeedsGraph},
    Row{"ask for name and export pen <p:pen>", "m F=p-1 numbers kept; o text=''",
        Action::Keeps | Action::NeedsGraph | Action::Asks},
    Row{"export all pens to <name:file>", "x text=name", Action::Keeps | Action::NeedsGraph},
    Row{"ask for name and export all pens", "x text=''", Action::Keeps | Action::NeedsGraph | Action::Asks},
    Row{"print <landscape:portrait=0|landscape=1>", "n F=landscape", Action::Keeps | Action::NeedsGraph | Action::Asks},
    Row{"prompt <text:text>", "f text=text", Action::Asks},
    Row{"ask <text:text> stop on <answer:yes=0|no=1>", "p F=answer text=text", Action::Asks},
    Row{"test mask of pen <p:pen> [tell <tell:nothing=0|pass=1|fail=2|both=3>] [stop on <action:fail=1|pass=2>]",
        "q F=p-1 N1=tell.0 N2=tell.1 N3=action; i F=9 text='-'", Action::TestsMask | Action::NeedsGraph},
    Row{"analyse pen <p:pen> [with capacitance of pen <c:pen?65536>] [showing <measures:measures?31>] [mode "
        "<mode:mode>]",
        "v F=p-1 N1=c-1 I=mode", Action::Analyses | Action::NeedsGraph},
    Row{"show loop", "u F=1", Action::NeedsGraph},
    Row{"hide loop", "u F=0", 0},
    Row{"notice <text:text>", "T F=0 text=text", 0},
    Row{"alarm <text:text>", "T F=1 text=text", 0},
    Row{"panel <text:text>", "r text=text", 0},
    Row{"quit program", "h", Action::EndsScript},
};

constexpr std::string_view kAnswered = "Ubgjioxnfp";

std::vector<std::string_view> split(std::string_view text, char separator)
{
    std::vector<std::string_view> cells;
    for (;;) {
        const std::size_t end = text.find(separator);
        cells.push_back(text.substr(0, end));
        if (end == std::string_view::npos)
            return cells;
        text.remove_prefix(end + 1);
    }
}

std::string_view trimmed(std::string_view text)
{
    const std::size_t first = text.find_first_not_of(' ');
    return first == std::string_view::npos ? std::string_view()
                                           : text.substr(first, text.find_last_not_of(' ') - first + 1);
}

ArgumentType typeOf(std::string_view name)
{
    constexpr std::array<std::pair<std::string_view, ArgumentType>, 12> kTypes{{
        {"frequency", ArgumentType::Frequency},
        {"points", ArgumentType::Points},
        {"period", ArgumentType::Period},
        {"attenuation", ArgumentType::Attenuation},
        {"samples", ArgumentType::Samples},
        {"pen", ArgumentType::Pen},
        {"duration", ArgumentType::Duration},
        {"digits", ArgumentType::Digits},
        {"mode", ArgumentType::Mode},
        {"text", ArgumentType::Text},
        {"file", ArgumentType::FileName},
        {"measures", ArgumentType::Measures},
    }};
    const auto* const found =
        std::find_if(kTypes.begin(), kTypes.end(), [name](const auto& type) { return type.first == name; });
    return found == kTypes.end() ? ArgumentType::Number : found->second;
}

Action::Slot slotOf(std::string_view text) // name:type?fallback
{
    Action::Slot slot;
    const std::size_t colon = text.find(':');
    slot.name = std::string(text.substr(0, colon));
    std::string_view type = text.substr(colon + 1);
    if (const std::size_t mark = type.find('?'); mark != std::string_view::npos) {
        slot.fallback = values::tolerantNumber(type.substr(mark + 1));
        type = type.substr(0, mark);
    }
    if (type.find('=') == std::string_view::npos) {
        slot.type = typeOf(type);
        return slot;
    }
    slot.type = ArgumentType::Choice;
    for (const std::string_view choice : split(type, '|')) {
        const std::size_t equals = choice.find('=');
        slot.choices.emplace_back(std::string(choice.substr(0, equals)),
                                  values::tolerantNumber(choice.substr(equals + 1)));
    }
    return slot;
}

void readPattern(Action& action)
{
    Action::Group* group = &action.head;
    for (std::string_view word : split(action.pattern, ' ')) {
        if (word.front() == '[') {
            group = &action.options.emplace_back();
            word.remove_prefix(1);
        }
        const bool closes = word.back() == ']';
        if (closes)
            word.remove_suffix(1);
        Action::Part part;
        if (word.front() == '<') {
            part.slot = static_cast<int>(action.slots.size());
            action.slots.push_back(slotOf(word.substr(1, word.size() - 2)));
        } else {
            part.word = std::string(word);
        }
        group->push_back(std::move(part));
        if (closes)
            group = &action.head;
    }
}

int slotNamed(const Action& action, std::string_view name)
{
    const auto found = std::find_if(action.slots.begin(), action.slots.end(),
                                    [name](const Action::Slot& slot) { return slot.name == name; });
    return found == action.slots.end() ? -1 : static_cast<int>(found - action.slots.begin());
}

Sum sumOf(const Action& action, std::string_view text)
{
    Sum sum;
    double sign = 1;
    while (!text.empty()) {
        const std::size_t end = text.find_first_of("+-", 1);
        std::string_view term = text.substr(0, end);
        if (term.front() == '+' || term.front() == '-') {
            sign = term.front() == '-' ? -1 : 1;
            term.remove_prefix(1);
        }
        const std::size_t star = term.find('*');
        const std::size_t dot = term.find('.');
        Sum::Term read;
        if (star != std::string_view::npos) {
            read.factor = sign * values::tolerantNumber(term.substr(0, star));
            read.slot = slotNamed(action, term.substr(star + 1));
        } else if (dot != std::string_view::npos) {
            read.slot = slotNamed(action, term.substr(0, dot));
            read.bit = term[dot + 1] - '0';
        } else if (read.slot = slotNamed(action, term); read.slot >= 0) {
            read.factor = sign;
        } else {
            read.factor = sign * values::tolerantNumber(term);
        }
        sum.terms.push_back(read);
        text = end == std::string_view::npos ? std::string_view() : text.substr(end);
    }
    return sum;
}

void readField(const Action& action, std::string_view text, Step& step) // F=sum
{
    const std::size_t equals = text.find('=');
    if (equals == std::string_view::npos)
        return; // "numbers kept" has been read
    const std::string_view name = text.substr(0, equals);
    const std::string_view value = text.substr(equals + 1);
    if (name == "text") {
        step.textForm = true;
        if (value.front() == '\'')
            step.word = std::string(value.substr(1, value.size() - 2));
        else
            step.textSlot = slotNamed(action, value);
        return;
    }
    Sum& sum = name == "F"    ? step.field
               : name == "N1" ? step.n1
               : name == "N2" ? step.n2
               : name == "N3" ? step.n3
               : name == "N4" ? step.n4
                              : step.i;
    sum = sumOf(action, value);
}

Step stepOf(const Action& action, std::string_view text)
{
    Step step;
    if (text == "sweep end") {
        step.kind = Step::Kind::SweepEnd;
        return step;
    }
    const std::vector<std::string_view> cells = split(text, ' ');
    if (cells[0] == "pause") {
        step.kind = Step::Kind::Pause;
        step.values.push_back(sumOf(action, cells[1]));
        return step;
    }
    if (cells[0] == ">") {
        step.kind = Step::Kind::Command;
        step.word = std::string(cells[1]);
        if (cells.size() > 2) {
            for (const std::string_view sum : split(cells[2], ','))
                step.values.push_back(sumOf(action, sum));
        }
        return step;
    }
    step.code = cells[0].front();
    step.keepsNumbers = text.find("numbers kept") != std::string_view::npos;
    for (std::size_t i = 1; i < cells.size(); ++i)
        readField(action, cells[i], step);
    return step;
}

std::vector<Action> read()
{
    std::vector<Action> actions;
    for (const Row& row : kRows) {
        Action& action = actions.emplace_back();
        action.pattern = row.pattern;
        action.road = row.road;
        action.traits = row.traits;
        readPattern(action);
        for (const std::string_view step : split(action.road, ';'))
            action.steps.push_back(stepOf(action, trimmed(step)));
    }
    return actions;
}

} // namespace

const std::vector<Action>& actions()
{
    static const std::vector<Action> table = read();
    return table;
}

bool isAnswered(char code)
{
    return kAnswered.find(code) != std::string_view::npos;
}

} // namespace ferrolex
