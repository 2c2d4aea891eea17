// Names for values whose meaning only a handset model knows, read from small JSON files (README.md of the labels folder
// describes them). Used by the commands that show such values; a missing or broken file costs the names, nothing else.
#pragma once

#include "phnctl/cli/options.h"
#include "phnctl/cli/report.h"
#include "phnctl/handset/handset.h"
#include "phnctl/text/json.h"

#include <string>

namespace phnctl {

class Labels
{
public:
    // The labels of that model, of the folder that the options name or of the shipped one. Says on standard error which
    // file cannot be used, and why.
    static Labels ForModel(const std::string& model, const Options& options);

    // A field under its name, as the label file of this model names and shows it. The JSON value stays as it is.
    template <class Value>
    Field Named(const std::string& name, const Value& value) const
    {
        Field field(name, name, value);
        Apply(field);
        return field;
    }

    // What the label file calls a value of the field; empty when it has no name.
    std::string NameOf(const std::string& name, std::int64_t value) const;

    // "Ms" or "S" when the label file calls the field a duration, as the end of a name that says so; empty otherwise.
    std::string DurationUnit(const std::string& name) const;

    // True when the label file says that the field tells how many of these the handset holds: "contacts".
    bool Counts(const std::string& name, const std::string& many) const;

private:
    void Apply(Field& field) const;

    Json m_fields; // null when there is no file for the model
};

// Those of the handset's model.
Labels LabelsOf(const Options& options, const Handset& handset);

} // namespace phnctl
