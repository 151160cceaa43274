// SPDX-License-Identifier: GPL-3.0-or-later
#include "sim/parts/PartFile.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <limits>
#include <numbers>

// Resources of a static library are not found by the linker on their own; the macro must stand outside any namespace.
static void initialiseParts()
{
    Q_INIT_RESOURCE(shipped);
}

namespace sim::partfile {

namespace {

constexpr double kTwoPi = 2.0 * std::numbers::pi;
constexpr int kLongestText = 500;
const QLatin1String kShippedFolder(":/marrowick-sim/parts/");

QString tr(const char* text)
{
    return QCoreApplication::translate("sim::PartFile", text);
}

/// Reads the entries of one JSON object and remembers the first thing that is wrong.
class EntryReader
{
public:
    EntryReader(QJsonObject object, QString place)
        : m_object(std::move(object))
        , m_place(std::move(place))
    {}

    QString text(const char* key, bool needed)
    {
        const QJsonValue value = take(key);
        if (value.isUndefined()) {
            if (needed)
                fail(tr("%1 lacks the entry \"%2\".").arg(m_place, QLatin1String(key)));
            return {};
        }
        if (!value.isString() || value.toString().size() > kLongestText ||
            (needed && value.toString().trimmed().isEmpty())) {
            fail(tr("The entry \"%1\" of %2 must be a text of at most %3 characters.")
                     .arg(QLatin1String(key), m_place)
                     .arg(kLongestText));
            return {};
        }
        return value.toString();
    }

    /// Within low to high, both included; nothing when the entry is absent.
    std::optional<double> number(const char* key, double low, double high)
    {
        const QJsonValue value = take(key);
        if (value.isUndefined())
            return {};
        const double number = value.toDouble(std::numeric_limits<double>::quiet_NaN());
        if (!(number >= low && number <= high)) {
            fail(tr("The entry \"%1\" of %2 must be a number from %3 to %4.")
                     .arg(QLatin1String(key), m_place)
                     .arg(low)
                     .arg(high));
            return {};
        }
        return number;
    }

    QJsonValue take(const char* key) { return m_object.take(QLatin1String(key)); }

    void fail(const QString& sentence)
    {
        if (m_sentence.isEmpty())
            m_sentence = sentence;
    }

    /// To be called last: whatever was not read is not known.
    Outcome finish()
    {
        if (m_sentence.isEmpty() && !m_object.isEmpty())
            fail(tr("The entry \"%1\" of %2 is not known.").arg(m_object.keys().first().left(40), m_place));
        return m_sentence.isEmpty() ? Outcome::success() : Outcome::failure(m_sentence);
    }

private:
    QJsonObject m_object;
    QString m_place;
    QString m_sentence;
};

ValueOr<MotionalBranch> readBranch(const QJsonValue& value, int number)
{
    const QString place = tr("branch %1").arg(number);
    if (!value.isObject())
        return Outcome::failure(tr("The entry for %1 must be an object in braces.").arg(place));
    EntryReader reader(value.toObject(), place);
    const std::optional<double> resistance = reader.number("resistance", 0, 1e12);
    const std::optional<double> inductance = reader.number("inductance", 1e-15, 1e9);
    const std::optional<double> capacitance = reader.number("capacitance", 1e-21, 1e3);
    const std::optional<double> resonance = reader.number("resonance", 1e-3, 1e12);
    const std::optional<double> quality = reader.number("quality", 1e-3, 1e9);
    if (const Outcome read = reader.finish(); !read)
        return read;
    if (!resistance)
        return Outcome::failure(tr("%1 lacks the entry \"resistance\".").arg(place));

    MotionalBranch branch{*resistance, inductance.value_or(0), capacitance.value_or(0)};
    if (!resonance) {
        if (quality)
            return Outcome::failure(tr("The entry \"quality\" of %1 needs the entry \"resonance\".").arg(place));
        if (*resistance == 0 && !inductance && !capacitance)
            return Outcome::failure(tr("%1 is a short circuit; give it a resistance above 0.").arg(place));
        return branch;
    }
    const int companions = (inductance ? 1 : 0) + (capacitance ? 1 : 0) + (quality ? 1 : 0);
    if (companions != 1)
        return Outcome::failure(
            tr("The entry \"resonance\" of %1 needs exactly one of \"inductance\", \"capacitance\" and \"quality\".")
                .arg(place));
    const double omega = kTwoPi * *resonance;
    if (quality) {
        if (*resistance == 0)
            return Outcome::failure(tr("The entry \"quality\" of %1 needs a resistance above 0.").arg(place));
        branch.inductance = *quality * *resistance / omega;
        branch.capacitance = 1.0 / (omega * omega * branch.inductance);
    } else if (inductance) {
        branch.capacitance = 1.0 / (omega * omega * branch.inductance);
    } else {
        branch.inductance = 1.0 / (omega * omega * branch.capacitance);
    }
    return branch;
}

} // namespace

ValueOr<PartModel> fromJson(const QByteArray& text)
{
    if (text.size() > kLongestFile)
        return Outcome::failure(tr("A part file has at most %1 bytes.").arg(kLongestFile));
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(text, &error);
    if (error.error != QJsonParseError::NoError) {
        const auto line = text.left(error.offset).count('\n') + 1;
        return Outcome::failure(tr("The text is not JSON: %1 (line %2).").arg(error.errorString()).arg(line));
    }
    if (!document.isObject())
        return Outcome::failure(tr("A part file holds one object in braces."));

    EntryReader reader(document.object(), tr("the part"));
    const QString name = reader.text("name", true);
    const QString source = reader.text("source", false);
    const std::optional<double> seriesResistance = reader.number("seriesResistance", 0, 1e9);
    const std::optional<double> staticCapacitance = reader.number("staticCapacitance", 0, 1);
    const std::optional<double> leakageResistance = reader.number("leakageResistance", 1e-3, 1e15);
    const QJsonValue list = reader.take("branches");
    if (!list.isUndefined() && (!list.isArray() || list.toArray().size() > kMostBranches))
        reader.fail(tr("The entry \"branches\" of the part must be a list of at most %1 branches.").arg(kMostBranches));
    if (const Outcome read = reader.finish(); !read)
        return read;

    std::vector<MotionalBranch> branches;
    for (const auto& value : list.toArray()) {
        const ValueOr<MotionalBranch> branch = readBranch(value, static_cast<int>(branches.size()) + 1);
        if (!branch)
            return Outcome::failure(branch.sentence());
        branches.push_back(branch.value());
    }
    return PartModel(name.trimmed(), source, seriesResistance.value_or(0), staticCapacitance.value_or(0),
                     leakageResistance, std::move(branches));
}

ValueOr<PartModel> load(const QString& nameOrFile)
{
    initialiseParts();
    const bool shipped = shippedNames().contains(nameOrFile);
    QFile file(shipped ? kShippedFolder + nameOrFile + QLatin1String(".json") : nameOrFile);
    if (!shipped && !file.exists())
        return Outcome::failure(tr("There is no part \"%1\": neither a shipped one (%2) nor a file of that name.")
                                    .arg(nameOrFile, shippedNames().join(QLatin1String(", "))));
    if (!file.open(QIODevice::ReadOnly))
        return Outcome::failure(tr("The part file \"%1\" cannot be read: %2.").arg(nameOrFile, file.errorString()));
    ValueOr<PartModel> part = fromJson(file.read(kLongestFile + 1));
    if (!part)
        return Outcome::failure(tr("Part file \"%1\": %2").arg(nameOrFile, part.sentence()));
    return part;
}

QStringList shippedNames()
{
    initialiseParts();
    QStringList names = QDir(kShippedFolder).entryList({QStringLiteral("*.json")}, QDir::Files, QDir::Name);
    for (QString& name : names)
        name.chop(5);
    return names;
}

} // namespace sim::partfile
