#include "phnctl/plan/entry_form.h"

namespace phnctl {

void AppendToList(std::string& list, std::string_view item)
{
    list.append(list.empty() ? "" : ", ").append(item);
}

std::string EntryForm::Values(const Entry& entry) const
{
    const std::vector<std::string> columns = Columns();
    const std::vector<std::string> row = Row(entry);
    const std::string title = Title(entry);
    std::string values;
    for (std::size_t i = 0; i < columns.size() && i < row.size(); ++i)
        if (!row[i].empty() && row[i] != title)
            AppendToList(values, columns[i] + ' ' + row[i]);
    return values;
}

} // namespace phnctl
