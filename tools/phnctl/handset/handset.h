// A handset that has been found and greeted: the library's calls with their answers checked. Given to the work of every
// command; lives as long as the session's run.
#pragma once

#include "phnctl/handset/library.h"
#include "phnctl/text/failure.h"

#include <string>

namespace phnctl {

class Handset
{
public:
    explicit Handset(const Library& library) : m_library(library) {}

    const Library& Api() const { return m_library; }

    // Throws Refusal with the code, its name and meaning when it is not success. `doing` goes on after "while".
    void Check(PHN_ERROR code, const std::string& doing) const;

    // A record that is read as a whole.
    template <class Record>
    Record Read(PHN_ERROR(PHN_CALL* call)(Record*), const std::string& doing) const
    {
        Record record{};
        record.uSize = sizeof record;
        Check(call(&record), doing);
        return record;
    }

private:
    const Library& m_library;
};

} // namespace phnctl
