// The vCards that people's address books really hold, and what becomes of them on the way to a handset.
#include "phnctl/contacts/card_reader.h"
#include "phnctl/contacts/card_writer.h"

#include "phnctl/contacts/contact.h"
#include "phnctl/contacts/fitter.h"
#include "phnctl/contacts/merge.h"

#include <array>
#include <gtest/gtest.h>
#include <map>
#include <sstream>
#include <tuple>

namespace {

using namespace phnctl;

using namespace contact_property;

// Fields in short: "C1 Ea" is a mobile number 1 and an address a.
const std::map<std::string, char> kLetters{{kCell, 'C'},   {kMobile2, 'M'}, {kHome, 'H'},
                                           {kWork, 'W'},   {kFax, 'F'},     {kEmail, 'E'},
                                           {kEmail2, 'N'}, {kDefault, 'D'}, {kSpeedDials, 'S'}};

std::vector<EntryField> Fields(const std::string& words)
{
    std::vector<EntryField> fields;
    std::istringstream stream(words);
    for (std::string word; stream >> word;)
        for (const auto& [property, letter] : kLetters)
            if (letter == word.front())
                fields.push_back({property, word.substr(1)});
    return fields;
}

// A candidate in one text: its fields in short, then its notes as code@line(property), and "!" when it cannot be held.
std::string Told(const Candidate& candidate)
{
    std::string text;
    for (const EntryField& field : candidate.entry.fields) {
        const auto letter = kLetters.find(field.property);
        text += (letter == kLetters.end() ? field.property + "=" : std::string(1, letter->second)) + field.value + "|";
    }
    for (const Note& note : candidate.notes)
        text += note.code + "@" + std::to_string(note.line) + "(" + note.property + ")|";
    return text + (candidate.fits ? "" : "!");
}

std::string Told(const Entry& entry)
{
    return Told({"", 0, entry, {}, true});
}

std::string Card(const std::string& inside, const std::string& version = "3.0")
{
    return "BEGIN:VCARD\nVERSION:" + version + "\n" + inside + "END:VCARD\n";
}

TEST(ContactCard, TakesWhatAddressBooksWrite)
{
    const std::string x37(37, 'x');
    const std::tuple<const char*, std::string, std::string> cases[] = {
        {"types in any order and case, lists, quotes, grouped, 4.0 URIs",
         Card("item1.FN:Ana\r\nTEL;VALUE=uri;TYPE=\"voice,cell\";PREF=1:tel:+1-555-0100;ext=5\r\n"
              "item2.tel;type=pref;type=HOME:(555) 0101\nTEL;TYPE=WORK,FAX:555.0102\nTEL;TYPE=work:555 0103\n"
              "EMAIL;TYPE=INTERNET:a@b.example\n",
              "4.0"),
         "FN=Ana|C+15550100p5|H5550101|F5550102|W5550103|Ea@b.example|D1|number-rewritten@4(TEL)|"},
        {"4.0 URIs of a number inside a country, with what else an address has",
         Card("FN:A\nTEL;VALUE=uri:tel:555-0100;phone-context=+1-914\n"
              "TEL;VALUE=uri;TYPE=home:TEL:+15550101;isub=7;ext=5\nTEL;VALUE=uri;TYPE=work:tel:+1-555-1234\\;ext=5\n",
              "4.0"),
         "FN=A|C+19145550100|H+15550101p5|W+15551234p5|number-rewritten@5(TEL)|number-rewritten@6(TEL)|"},
        {"2.1: bare types, quoted-printable over soft breaks, folded where a space belongs to the text",
         "BEGIN:VCARD\nVERSION:2.1\nN;CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE:M=C3=BCl=\nler;Zo=C3=\n=AB\n"
         "TEL;CELL;PREF:1\nTEL;HOME;FAX:2\nTEL;PAGER:3\nNOTE:two\n  lines\nEND:VCARD\n",
         "FN=Zoë Müller|C1|F2|D1|dropped@8(TEL)|dropped@9(NOTE)|"},
        {"a character set of its own, and bytes that are none",
         Card("FN;CHARSET=ISO-8859-2:\xA3ukasz\nTEL:1\n") + Card("FN;CHARSET=ISO-8859-1:\x8Eofia\nTEL:1\n") +
             Card("FN:Ren\xE9\nTEL:2\n"),
         "FN=Łukasz|C1|no-place-in-code-page@3(FN)|! FN=Žofia|C1| FN=René|C2|charset-guessed@13(FN)|"},
        {"3.0 folds anywhere, also inside a character; escapes",
         Card("FN:Berg\\, A\\;n\\\\n\xC3\r\n \xA9\r\nTEL;TYPE=\r\n\tCELL:55\r\n 5\r\n"), "FN=Berg, A;n\\né|C555|"},
        {"no usable FN; the organisation is a name, too",
         Card("FN:  \nN:Berg;Anna;Maria;Dr.;\nORG:Harbour;Crew\nTEL:1\n") + Card("N:;;;;\nORG:Harbour;Crew\nTEL:1\n"),
         "FN=Dr. Anna Maria Berg|C1|dropped@5(ORG)| FN=Harbour|C1|"},
        {"FN and N", Card("FN:Berg\\, Ana\nN:Berg;Ana;;;\nTEL:1\n") + Card("FN:Mum\nN:Berg;Eva;;;\nTEL:1\n"),
         "FN=Ana Berg|C1|name-from-parts@3(FN)| FN=Mum|C1|dropped@10(N)|"},
        {"labels of an address book",
         Card("FN:A\nitem1.TEL:1\nitem1.X-ABLabel:_$!<HomeFAX>!$_\n") + Card("FN:B\nTEL;TYPE=WORKFAX:2\n"),
         "FN=A|F1| FN=B|F2|"},
        {"extensions are dialled after a pause; what is not dialled from everywhere and remarks go",
         Card("FN:A\nTEL:555 0100 ext. 22\nTEL:+49 (0)30 1234567\nTEL:02234/12345 (abends)\nTEL:Max 5\n"),
         "FN=A|C5550100p22|H+49301234567|W0223412345|number-rewritten@4(TEL)|number-rewritten@5(TEL)|"
         "number-rewritten@6(TEL)|number-not-dialable@7(TEL)|"},
        {"several numbers of a kind; those without a type take what is left",
         Card("FN:A\nTEL:0\nTEL;TYPE=CELL:1\nTEL;TYPE=CELL:2\nTEL;TYPE=CELL:3\nTEL;TYPE=HOME:4\nTEL:5\n"
              "EMAIL:a\nEMAIL:b\nEMAIL:c\n"),
         "FN=A|W0|C1|M2|H4|Ea|Nb|one-too-many@7(TEL)|one-too-many@9(TEL)|one-too-many@12(EMAIL)|"},
        {"what has no place, a photo with folded base64 included",
         Card("FN:A\nTEL:1\nPHOTO;ENCODING=b;TYPE=JPEG:AAAA\n BBBB\nBDAY:1970-01-01\n"),
         "FN=A|C1|dropped@5(PHOTO)|dropped@7(BDAY)|"},
        {"a cut number would be a wrong number; so would one without its letters",
         Card("FN:A\nTEL:1\nTEL;TYPE=HOME:" + std::string(53, '1') + "\nTEL;TYPE=WORK:1-800-FLOWERS\n"),
         "FN=A|C1|number-too-long@5(TEL)|number-not-dialable@6(TEL)|"},
        {"names are cut, and said to be", Card("FN:" + x37 + " " + x37 + "\nTEL:1\n"),
         "FN=" + x37.substr(1) + " " + x37.substr(1) + "|C1|name-cut@3(FN)|"},
        {"nothing to store", Card("FN:A\nTEL:\nEMAIL: \n"), "FN=A|no-number@0()|!"},
        {"the library's own properties",
         Card("FN:A\nX-PHN-MOBILE-2:1\nTEL;TYPE=CELL:2\nX-PHN-GROUP-ID:3\nX-PHN-RINGER-ID:x\n"
              "X-PHN-DEFAULT-NO:4\nX-PHN-SPEEDDIAL-LIST:1\\,0,0,4,0\nREV:N/A\nUID:N/A\n"),
         "FN=A|M1|C2|X-PHN-GROUP-ID=3|D4|S1,0,0,4,0|not-a-number@7(X-PHN-RINGER-ID)|"},
        {"control characters become spaces, not lines", Card("FN:A\\nTEL:9\nTEL:1\nEMAIL:a\\nEND:VCARD\n"),
         "FN=A TEL:9|C1|Ea END:VCARD|control-characters@3(FN)|control-characters@5(EMAIL)|"},
        {"no card before a card", "hello\n" + Card("FN:A\nTEL:1\n"), "not-a-card@1()|! FN=A|C1|"},
        {"a card without an end", "BEGIN:VCARD\nFN:A\nTEL:1\n" + Card("FN:B\nTEL:2\n"),
         "FN=A|C1|not-a-card@1()|! FN=B|C2|"},
        {"no properties", Card("FN:A\nno colon\nnor here\nTEL:1\n"), "FN=A|C1|not-a-property@4()|"},
        {"a cut file", "BEGIN:VCARD\rFN;ENCODING=QUOTED-PRINTABLE:A=", "FN=A=|not-a-card@1()|!"},
    };
    for (const auto& [what, file, expected] : cases) {
        std::string told;
        for (const Candidate& candidate : ContactsOfFile("file", file))
            told += (told.empty() ? "" : " ") + Told(candidate);
        EXPECT_EQ(told, expected) << what;
    }
}

TEST(ContactMerge, CostsTheHandsetNothing)
{
    const struct
    {
        const char *what, *wanted, *present, *merged, *kept, *leftOut;
        bool isAnywhere = false; // no type is given for the mobile number
    } cases[] = {
        {"a new value goes beside what is in its place", "C2 Eb", "W1 C9 Ea", "W1 C9 Ea M2 Nb", "19a", ""},
        {"or where one is free", "C5", "C1 M2 H3", "C1 M2 H3 W5", "123", ""},
        {"what finds no place is left out; no voice goes to a fax", "C5", "C1 M2 H3 W4", "C1 M2 H3 W4", "1234", "5"},
        {"and no fax to a voice", "F5", "F1", "F1", "1", "5"},
        {"a number without a type takes a free place", "C2", "C1", "C1 H2", "1", "", true},
        {"a number moves to its type, and its settings with it", "H1", "M1 D4 S0,0,0,4,0", "H1 D2 S0,4,0,0,0", "", ""},
        {"but not onto another, nor onto one that cannot move", "H1 C3", "C1 H2 W3", "C1 H2 W3", "2", ""},
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
        EXPECT_EQ(Told(merged.entry), Told(CompleteContact({Fields(test.merged)}, nullptr)));
        EXPECT_EQ(values(merged.kept), test.kept);
        EXPECT_EQ(values(merged.leftOut), test.leftOut);
    }
}

TEST(ContactCard, ComesBackFromItsOwnFileUnchanged)
{
    const StoredEntry contact{0,
                              {{{"FN", "Berg, A; \\n\" Ünïcödé " + std::string(20, 'x')},
                                {"X-PHN-MOBILE-2", "+1*#pw"},
                                {"EMAIL", "a,b;c\\@example.org"},
                                {"X-PHN-EMAIL-2", "d"},
                                {"X-PHN-GROUP-ID", "-1"},
                                {"X-PHN-SPEEDDIAL-LIST", "0,0,0,9,0"}}}};
    const std::string file = FileOfContacts({&contact, 1});
    const std::vector<Candidate> back = ContactsOfFile("file", file);
    ASSERT_EQ(back.size(), 1u);
    EXPECT_EQ(Told(back.front().entry), Told(contact.entry)) << file;
    // Other programs know these.
    EXPECT_NE(file.find("\nTEL;TYPE=CELL;X-PHN-PLACE=2:+1*#pw\r\n"), std::string::npos) << file;
    EXPECT_NE(file.find("\nEMAIL;X-PHN-PLACE=2:d\r\n"), std::string::npos) << file;
}

// The library writes a contact's texts as the handset has them.
TEST(ContactCard, ALineEndInATextOfTheHandsetMakesNoOtherProperty)
{
    // The library's lines and speed dials, what is read of them, and the name in a file.
    const std::array<const char*, 4> cases[] = {
        {"FN:Ann\r\nPHOTO:x\r\nEND:VCARD\r\nBEGIN:VCARD Lee\r\nTEL;TYPE=CELL:1", "0,0,0,0,0",
         "FN=Ann\r\nPHOTO:x\r\nEND:VCARD\r\nBEGIN:VCARD Lee|C1|", "Ann PHOTO:x END:VCARD BEGIN:VCARD Lee"},
        {"FN:Ann\r\nX-PHN-GROUP-ID:9\r\nREV:N/A\r\nUID:N/A\r\nEMAIL:a\r\n\r\nFN:Lee", "0,0,0,0,0",
         "FN=Ann\r\nX-PHN-GROUP-ID:9\r\nREV:N/A\r\nUID:N/A|Ea\r\n\r\nFN:Lee|", "Ann X-PHN-GROUP-ID:9 REV:N/A UID:N/A"},
        {"FN:Ann\r\nTEL;TYPE=CELL:666", "", "FN=Ann\r\nTEL;TYPE=CELL:666|", "Ann TEL;TYPE=CELL:666"}, // has no number
        {"FN:A\x1B\nB\rC\tD\x81\r\nEMAIL:a", "0,0,0,0,0", "FN=A\x1B\nB\rC\tD\xC2\x81|Ea|", "A\\x1B B C D\\x81"},
        // What looks like a number of the contact cannot be told from one.
        {"FN:Ann\r\nTEL;TYPE=CELL:666\r\nTEL;TYPE=CELL:1", "0,0,0,0,0", "FN=Ann|C666|C1|", "Ann"},
    };
    for (const auto& [lines, speedDials, read, inFile] : cases) {
        const StoredEntry contact{0,
                                  FromLibraryText("BEGIN:VCARD\r\nVERSION:3.0\r\n" + std::string(lines) +
                                                  "\r\nREV:N/A\r\nUID:N/A\r\nX-PHN-GROUP-ID:1\r\nX-PHN-PICTURE-ID:2\r\n"
                                                  "X-PHN-RINGER-ID:3\r\nX-PHN-DEFAULT-NO:\r\nX-PHN-SPEEDDIAL-LIST:" +
                                                  speedDials + "\r\nEND:VCARD\r\n")};
        EXPECT_TRUE(Told(contact.entry).starts_with(read + std::string("X-PHN-GROUP-ID=1|"))) << Told(contact.entry);
        const std::string file = FileOfContacts({&contact, 1});
        const std::vector<Candidate> back = ContactsOfFile("file", file);
        ASSERT_EQ(back.size(), 1u) << file;
        EXPECT_EQ(*back.front().entry.Find("FN"), inFile);
        EXPECT_EQ(StorableContact(contact.entry).Text(), CompleteContact(back.front().entry, nullptr).Text()) << file;
        const bool hasControls = std::string(inFile) != "Ann";
        EXPECT_EQ(Told(back.front()).find("control-characters") != std::string::npos, hasControls) << file;
    }
}

} // namespace
