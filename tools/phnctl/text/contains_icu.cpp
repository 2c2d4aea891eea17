// With the root collation of ICU: letters are the same whose primary weight is, such as a, A and å.
#include "phnctl/text/contains.h"

#include <memory>
#include <stdexcept>
#include <string>
#include <unicode/coll.h>
#include <unicode/stsearch.h>
#include <unicode/tblcoll.h>

namespace phnctl {

namespace {

icu::RuleBasedCollator* MakeCollator()
{
    UErrorCode status = U_ZERO_ERROR;
    std::unique_ptr<icu::Collator> collator(icu::Collator::createInstance(icu::Locale::getRoot(), status));
    auto* const rules = dynamic_cast<icu::RuleBasedCollator*>(collator.get());
    if (U_FAILURE(status) || !rules)
        throw std::runtime_error(std::string("texts cannot be compared: ") + u_errorName(status));
    rules->setStrength(icu::Collator::PRIMARY);
    static_cast<void>(collator.release()); // as what it is
    return rules;
}

} // namespace

bool Contains(const std::string& text, const std::string& wanted)
{
    static const std::unique_ptr<icu::RuleBasedCollator> collator(MakeCollator());
    UErrorCode status = U_ZERO_ERROR;
    icu::StringSearch search(icu::UnicodeString::fromUTF8(wanted), icu::UnicodeString::fromUTF8(text), collator.get(),
                             nullptr, status);
    return search.first(status) != USEARCH_DONE && U_SUCCESS(status);
}

} // namespace phnctl
