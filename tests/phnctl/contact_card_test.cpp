// The vCards that people's address books really hold, and what becomes of them on the way to a handset.
#include "phnctl/contacts/card_reader.h"
#include "phnctl/contacts/card_writer.h"

#include "phnctl/contacts/contact.h"
#include "phnctl/contacts/merge.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <map>
#include <sstream>

namespace phnctl {
namespace {

using namespace contact_property;

// A candidate in one text: its fields, then its notes as code@line(property), and "!" when it cannot be held.
std::string Told(const Candidate& candidate)
{
    std::string text;
    for (const EntryField& field : candidate.entry.fields)
        text += field.property + "=" + field.value + "|";
    for (const Note& note : candidate.notes)
        text += note.code + "@" + std::to_string(note.line) + "(" + note.property + ")|";
    return text + (candidate.fits ? "" : "!");
}

std::string Told(const std::string& file)
{
    std::string text;
    for (const Candidate& candidate : ContactsOfFile("file", file))
        text += (text.empty() ? "" : " // ") + Told(candidate);
    return text;
}

std::string Card(const std::string& inside, const std::string& version = "3.0")
{
    return "BEGIN:VCARD\r\nVERSION:" + version + "\r\n" + inside + "END:VCARD\r\n";
}

const std::string k37(37, 'x');
const std::string k53(53, '1');

TEST(ContactCard, TakesWhatAddressBooksWrite)
{
    const struct
    {
        const char* what;
        std::string file;
        std::string told;
    } cases[] = {
        {"types in any order and case, lists, quotes, grouped, 4.0 URIs",
         Card("item1.FN:Ana\r\nTEL;VALUE=uri;TYPE=\"voice,cell\";PREF=1:tel:+1-555-0100;ext=5\r\n"
              "item2.tel;type=pref;type=HOME:(555) 0101\r\nitem2.X-ABLabel:_$!<Home>!$_\r\n"
              "TEL;TYPE=WORK,FAX:555.0102\r\nTEL;TYPE=work:555 0103\r\nEMAIL;TYPE=INTERNET:a@b.example\r\n",
              "4.0"),
         "FN=Ana|TEL;TYPE=CELL=+15550100p5|TEL;TYPE=HOME=5550101|TEL;TYPE=FAX=5550102|TEL;TYPE=WORK=5550103|"
         "EMAIL=a@b.example|X-PHN-DEFAULT-NO=1|number-rewritten@4(TEL)|"},
        {"2.1: bare types, quoted-printable over soft breaks, folded where a space belongs to the text",
         "BEGIN:VCARD\nVERSION:2.1\nN;CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE:M=C3=BCl=\nler;Zo=C3=\n=AB\n"
         "TEL;CELL;PREF:1\nTEL;HOME;FAX:2\nTEL;PAGER:3\nADR;HOME:;;;;;;\nNOTE:two\n  lines\nEND:VCARD\n",
         "FN=Zoë Müller|TEL;TYPE=CELL=1|TEL;TYPE=FAX=2|X-PHN-DEFAULT-NO=1|dropped@8(TEL)|dropped@10(NOTE)|"},
        {"a character set of its own, and bytes that are none",
         Card("FN;CHARSET=ISO-8859-2:\xA3ukasz\r\nTEL:1\r\n") + Card("FN:Ren\xE9\r\nTEL:2\r\n"),
         "FN=Łukasz|TEL;TYPE=CELL=1|no-place-in-code-page@3(FN)|! // FN=René|TEL;TYPE=CELL=2|charset-guessed@8(FN)|"},
        {"3.0 folds anywhere, also inside a character; escapes",
         Card("FN:Berg\\, A\\;n\\\\n\xC3\r\n \xA9\r\nTEL;TYPE=\r\n\tCELL:55\r\n 5\r\n"),
         "FN=Berg, A;n\\né|TEL;TYPE=CELL=555|"},
        {"no usable FN; the organisation is a name, too",
         Card("FN:  \r\nN:Berg;Anna;Maria;Dr.;\r\nORG:Harbour;Crew\r\nTEL:1\r\n") +
             Card("N:;;;;\r\nORG:Harbour;Crew\r\nTEL:1\r\n"),
         "FN=Dr. Anna Maria Berg|TEL;TYPE=CELL=1|dropped@5(ORG)| // FN=Harbour|TEL;TYPE=CELL=1|"},
        {"FN and N",
         Card("FN:Dr. Ana Berg\r\nN:Berg;Ana;;Dr.;\r\nTEL:1\r\n") +
             Card("FN:Berg\\, Ana\r\nN:Berg;Ana;;;\r\nTEL:1\r\n") +
             Card("FN:Ana Berg\r\nN:Berg;Ana;;Dr.;\r\nTEL:1\r\n") + Card("FN:Mum\r\nN:Berg;Eva;;;\r\nTEL:1\r\n"),
         "FN=Dr. Ana Berg|TEL;TYPE=CELL=1| // FN=Ana Berg|TEL;TYPE=CELL=1|name-from-parts@9(FN)| // "
         "FN=Dr. Ana Berg|TEL;TYPE=CELL=1|name-from-parts@15(FN)| // FN=Mum|TEL;TYPE=CELL=1|dropped@22(N)|"},
        {"labels of an address book; a person's own is dropped",
         Card("FN:A\r\nitem1.TEL:1\r\nitem1.X-ABLabel:_$!<HomeFAX>!$_\r\nitem2.TEL:2\r\nitem2.X-ABLabel:Harbour\r\n"),
         "FN=A|TEL;TYPE=FAX=1|TEL;TYPE=CELL=2|dropped@7(X-ABLABEL)|"},
        {"extensions, however they are written, are dialled after a pause; p and w are the handset's own",
         Card("FN:A\r\nTEL:555 0100 ext. 22\r\nTEL:5550101x3\r\nTEL:5550102,,9\r\nTEL:5554w22\r\nTEL;TYPE=FAX:Max "
              "5\r\n"),
         "FN=A|TEL;TYPE=CELL=5550100p22|TEL;TYPE=HOME=5550101p3|TEL;TYPE=WORK=5550102pp9|X-PHN-MOBILE-2=5554w22|"
         "number-rewritten@4(TEL)|number-rewritten@5(TEL)|number-rewritten@6(TEL)|"
         "number-not-dialable@8(TEL)|"},
        {"what is not dialled from everywhere, and a second ending; area codes keep their slash, remarks go",
         Card("FN:A\r\nTEL:+49 (0)30 1234567\r\nTEL:1234567/89/90\r\nTEL:02234/12345 (abends)\r\nTEL:(0)40 123\r\n"
              "TEL;TYPE=FAX:+4930/12345 - +6\r\n"),
         "FN=A|TEL;TYPE=CELL=+49301234567|TEL;TYPE=HOME=1234567|TEL;TYPE=WORK=0223412345|X-PHN-MOBILE-2=040123|"
         "TEL;TYPE=FAX=+493012345+6|number-rewritten@4(TEL)|number-rewritten@5(TEL)|number-rewritten@6(TEL)|"
         "number-rewritten@8(TEL)|"},
        {"several numbers of a kind; those without a type take what is left",
         Card("FN:A\r\nTEL:0\r\nTEL;TYPE=CELL:1\r\nTEL;TYPE=CELL:2\r\nTEL;TYPE=CELL:3\r\nTEL;TYPE=HOME:4\r\n"
              "TEL:5\r\nTEL:6\r\nEMAIL:a\r\nEMAIL:b\r\nEMAIL:c\r\n"),
         "FN=A|TEL;TYPE=WORK=0|TEL;TYPE=CELL=1|X-PHN-MOBILE-2=2|TEL;TYPE=HOME=4|EMAIL=a|X-PHN-EMAIL-2=b|"
         "one-too-many@7(TEL)|one-too-many@9(TEL)|one-too-many@10(TEL)|one-too-many@13(EMAIL)|"},
        {"what has no place, a photo with folded base64 included",
         Card("FN:A\r\nTEL:1\r\nPHOTO;ENCODING=b;TYPE=JPEG:AAAA\r\n BBBB\r\n CCCC\r\nBDAY:1970-01-01\r\nX-FOO:1\r\n"),
         "FN=A|TEL;TYPE=CELL=1|dropped@5(PHOTO)|dropped@8(BDAY)|dropped@9(X-FOO)|"},
        {"a cut number would be a wrong number; so would one without its letters",
         Card("FN:A\r\nTEL:1\r\nTEL;TYPE=HOME:" + k53 + "\r\nTEL;TYPE=WORK:1-800-FLOWERS\r\nTEL;TYPE=FAX:5,6;7 P8\r\n"),
         "FN=A|TEL;TYPE=CELL=1|TEL;TYPE=FAX=5p6w7p8|number-too-long@5(TEL)|number-not-dialable@6(TEL)|"
         "number-rewritten@7(TEL)|"},
        {"names are cut, and said to be", Card("FN:" + k37 + " " + k37 + "\r\nTEL:1\r\n"),
         "FN=" + k37.substr(1) + " " + k37.substr(1) + "|TEL;TYPE=CELL=1|name-cut@3(FN)|"},
        {"nothing to store", Card("FN:A\r\nTEL:\r\nEMAIL: \r\n"), "FN=A|no-number@0()|!"},
        {"the library's own properties",
         Card("FN:A\r\nX-PHN-MOBILE-2:1\r\nTEL;TYPE=CELL:2\r\nX-PHN-GROUP-ID:3\r\nX-PHN-RINGER-ID:x\r\n"
              "X-PHN-DEFAULT-NO:4\r\nX-PHN-SPEEDDIAL-LIST:1\\,2,3,4,5\r\nREV:N/A\r\nUID:N/A\r\n"),
         "FN=A|X-PHN-MOBILE-2=1|TEL;TYPE=CELL=2|X-PHN-GROUP-ID=3|X-PHN-DEFAULT-NO=4|X-PHN-SPEEDDIAL-LIST=1,2,3,4,5|"
         "not-a-number@7(X-PHN-RINGER-ID)|no-number-there@0(X-PHN-SPEEDDIAL-LIST)|"},
        {"control characters become spaces, not lines", Card("FN:A\\nTEL:9\r\nTEL:1\r\nEMAIL:a\\nEND:VCARD\r\n"),
         "FN=A TEL:9|TEL;TYPE=CELL=1|EMAIL=a END:VCARD|"},
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(test.what);
        EXPECT_EQ(Told(test.file), test.told);
    }
}

// Fields in short: "C1 Ea" is a mobile number 1 and an address a.
std::vector<EntryField> Fields(const std::string& words)
{
    const std::map<char, std::string> properties{{'C', kCell},   {'M', kMobile2}, {'H', kHome},
                                                 {'W', kWork},   {'F', kFax},     {'E', kEmail},
                                                 {'N', kEmail2}, {'D', kDefault}, {'S', kSpeedDials}};
    std::vector<EntryField> fields;
    std::istringstream stream(words);
    for (std::string word; stream >> word;)
        fields.push_back({properties.at(word.front()), word.substr(1)});
    return fields;
}

TEST(ContactMerge, CostsTheHandsetNothing)
{
    const struct
    {
        const char *what, *wanted, *present, *merged, *kept, *leftOut;
        bool isAnywhere = false; // no type is given for the mobile number
    } cases[] = {
        {"a new value goes beside what is in its place", "C2 Eb", "W1 C9 Ea", "W1 C9 Ea M2 Nb", "19a", ""},
        {"what finds no place is left out; no voice goes to a fax", "C5", "C1 M2 H3 W4", "C1 M2 H3 W4", "1234", "5"},
        {"and no fax to a voice", "F5", "F1", "F1", "1", "5"},
        {"a number without a type takes a free place", "C2", "C1", "C1 H2", "1", "", true},
        {"or stays where it is", "C2", "C1 F2", "C1 F2", "1", "", true},
        {"a number moves to its type, and its settings with it", "H1", "M1 D4 S0,0,0,4,0", "H1 D2 S0,4,0,0,0", "", ""},
        {"but not onto another, nor onto one that cannot move", "H1 C3", "C1 H2 W3", "C1 H2 W3", "2", ""},
        {"two change places", "C1 H2", "C2 H1", "C1 H2", "", ""},
        {"a number that the card has twice", "C1 H1", "C1", "C1 H1", "", ""},
        {"a dial belongs to one number", "H1 S0,4,0,0,0", "M2 S0,0,0,4,0", "M2 H1 S0,4,0,0,0", "2", ""},
        {"the card's settings are those of its numbers; those of other numbers stay", "C2 D1 S7,0,0,0,0",
         "C1 M3 S0,0,0,4,0", "C1 M3 H2 D2 S0,7,0,4,0", "13", "", true},
    };
    const auto values = [](const std::vector<EntryField>& fields) {
        std::string text;
        for (const EntryField& field : fields)
            text += field.value;
        return text;
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(test.what);
        Candidate card{"", 0, {Fields(test.wanted)}, {}};
        if (test.isAnywhere)
            card.about.fields.push_back({kCell, kAnyNumber});
        const Merged merged = MergeContacts(card, {Fields(test.present)});
        const Entry expected = CompleteContact({Fields(test.merged)}, nullptr);
        EXPECT_EQ(Told({"", 0, merged.entry, {}, true}), Told({"", 0, expected, {}, true}));
        EXPECT_EQ(values(merged.kept), test.kept);
        EXPECT_EQ(values(merged.leftOut), test.leftOut);
    }
}

TEST(ContactCard, SaysWhatIsWrongWithAFile)
{
    const struct
    {
        std::string file;
        std::string told;
    } cases[] = {
        {"hello\nworld\n" + Card("FN:A\r\nTEL:1\r\n"), "not-a-card@1()|! // FN=A|TEL;TYPE=CELL=1|"},
        {"BEGIN:VCARD\nFN:A\nTEL:1\n", "FN=A|TEL;TYPE=CELL=1|not-a-card@1()|!"},
        {"BEGIN:VCARD\nFN:A\nTEL:1\n" + Card("FN:B\r\nTEL:2\r\n"),
         "FN=A|TEL;TYPE=CELL=1|not-a-card@1()|! // FN=B|TEL;TYPE=CELL=2|"},
        {Card("FN:A\r\nno colon\r\nnor here\r\nTEL:1\r\n"), "FN=A|TEL;TYPE=CELL=1|not-a-property@4()|"},
        {"BEGIN:VCARD\rFN;ENCODING=QUOTED-PRINTABLE:A=", "FN=A=|not-a-card@1()|!"},
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(test.file);
        EXPECT_EQ(Told(test.file), test.told);
    }
    // Bytes of no named character set are Windows' own, also where the code page is UTF-8.
    setenv("PHNNRV_ANSI_CODE_PAGE", "65001", 1);
    EXPECT_EQ(Told(Card("N:M\xFCller;Zo\xEB\r\nTEL;CELL:1\r\n", "2.1")),
              "FN=Zoë Müller|TEL;TYPE=CELL=1|charset-guessed@3(N)|");
    unsetenv("PHNNRV_ANSI_CODE_PAGE");
}

TEST(ContactCard, ComesBackFromItsOwnFileUnchanged)
{
    const std::vector<StoredEntry> contacts{{0,
                                             {{{"FN", "Berg, A; \\n\" Ünïcödé " + std::string(20, 'x')},
                                               {"X-PHN-MOBILE-2", "+1*#pw"},
                                               {"EMAIL", "a,b;c\\@example.org"},
                                               {"X-PHN-GROUP-ID", "-1"},
                                               {"X-PHN-SPEEDDIAL-LIST", "0,0,0,9,0"}}}},
                                            {1, {{{"TEL;TYPE=FAX", "1"}}}}};
    const std::string file = FileOfContacts(contacts);
    const std::vector<Candidate> back = ContactsOfFile("file", file);
    ASSERT_EQ(back.size(), contacts.size());
    for (std::size_t i = 0; i < back.size(); ++i)
        EXPECT_EQ(Told({"", 0, back[i].entry, {}, back[i].fits}), Told({"", 0, contacts[i].entry, {}, true})) << file;
}

} // namespace
} // namespace phnctl
