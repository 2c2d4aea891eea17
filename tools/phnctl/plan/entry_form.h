// How entries of one sort are named, and how those of files meet those of the handset. Plans and their reports need no
// more of a sort than this; what can be read and written one by one under indexes is an EntryKind besides. Objects are
// stateless and live as long as the program.
#pragma once

#include "phnctl/plan/entry.h"

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace phnctl {

struct Inventory;
struct Plan;

void AppendToList(std::string& list, std::string_view item); // with a comma between

// What becomes of that which only the handset's entry holds when a file's entry changes it.
enum class Filling
{
    Replace, // it goes
    Merge,   // it stays, where the kind can merge, and a note says so
};

class EntryForm
{
public:
    EntryForm(std::string one, std::string many) : m_one(std::move(one)), m_many(std::move(many)) {}
    virtual ~EntryForm() = default;
    EntryForm(const EntryForm&) = delete;
    EntryForm& operator=(const EntryForm&) = delete;

    const std::string& One() const { return m_one; }   // "contact"
    const std::string& Many() const { return m_many; } // "contacts": the command's word and the JSON member

    // For people: an entry in a few words, and the name of a property.
    virtual std::string Title(const Entry& entry) const = 0;
    virtual std::string Label(const std::string& property) const = 0;
    // The columns of a list, behind the index, and an entry's row of it.
    virtual std::vector<std::string> Columns() const = 0;
    virtual std::vector<std::string> Row(const Entry& entry) const = 0;
    // What an entry holds beside its title: "Mobile 5551234567, Fax 5551234568". By the columns, unless a kind has
    // more.
    virtual std::string Values(const Entry& entry) const;

    // What a file's entry does not say is taken from the entry that it replaces (null: none).
    virtual Entry Complete(const Entry& wanted, const Entry* replaced) const = 0;

    // The plan that stores the entries of files: a decision for each, in their order.
    virtual Plan Meet(std::vector<Candidate> candidates, const Inventory& inventory, Filling filling) const = 0;

private:
    const std::string m_one;
    const std::string m_many;
};

} // namespace phnctl
