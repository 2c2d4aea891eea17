// Entries in the person's own editor: what is saved is written, and nothing else; nothing stays behind.
#include "phnctl/handset_run.h"

#include <tuple>
#include <unistd.h>

namespace {

class Edit : public HandsetRun
{
protected:
    Edit() { m_program.Set("XDG_STATE_HOME", Path("state")); }
    // An editor that runs these commands on the file, "$1".
    void UseEditor(const std::string& commands) { m_program.Set("VISUAL", "sh " + File("editor", commands + "\n")); }
};

TEST_F(Edit, WritesWhatWasSavedOrNothing)
{
    const std::string before = Entries();
    const std::tuple<const char*, const char*, int, const char*, bool> cases[] = {
        {"true", "contacts edit 0", 0, "Nothing was changed.\n", false},
        {"sed -i '/WORK:/s/$/5550199/' \"$1\"", "contacts edit 0", 0, "    Work: (nothing) -> 5550199\n", true},
        {"sed -i 's/FN:.*/FN:Ann Lee/' \"$1\"", "contacts edit 0", 0, "    Name: Anna Berg -> Ann Lee\n", true},
        {"sed -i '/WORK:/s/$/5550199/' \"$1\"", "contacts edit 0 --dry-run", 0, "1 contact: 1 to change", false},
        {"sed -i 's/^SUMMARY:.*/SUMMARY:Tea/' \"$1\"", "events edit 25", 0, "    Text: Swimming -> Tea\n", true},
        {"sed -i '/WORK:/s/$/noon/' \"$1\"", "contacts edit 0", 1, "'noon' is no number that can be dialled.\n", false},
        {"sed -i 's/^DTSTART.*/DTSTART:noon/' \"$1\"", "events edit 25", 1, "line ", false},
        {": > \"$1\"", "contacts edit 0", 1, "the text holds 0 contacts; it must be one.\n", false},
        {"echo >> \"$1\"; exit 3", "contacts edit 0", 1, "the editor could not be started, or ended", false},
        {"true", "contacts edit 7", 1, "no contact is stored under index 7", false},
    };
    for (const auto& [editor, words, status, says, changes] : cases) {
        UseEditor(editor);
        Expect(status, words, {says});
        EXPECT_EQ(Entries() != before, changes) << words;
        EXPECT_TRUE(std::filesystem::is_empty(m_program.TemporaryFolder())) << words;
        if (changes)
            Expect(0, "undo --yes");
        EXPECT_TRUE(Entries() == before) << words;
    }
    UseEditor("stat -c %a%A \"$1\" \"$(dirname \"$1\")\" > " + Path("modes"));
    Run("contacts edit 0");
    EXPECT_EQ(ReadAll(Path("modes")), "600-rw-------\n700drwx------\n");
}

TEST_F(Edit, LeavesWhatTheHandsetHasChangedMeanwhile)
{
    UseEditor("touch " + Path("begun") + "; sleep 1; sed -i '/WORK:/s/$/5550199/' \"$1\"");
    const pid_t process = m_program.Start("contacts edit 0");
    while (!std::filesystem::exists(Path("begun")))
        usleep(1000);
    Handset().Change(0, [](simulator::Phone& phone) { phone.contacts[0].firstName = "Other"; });
    const std::string changed = Entries();
    const Outcome left = m_program.Finish(process);
    ::Expect(left, 1, {"has become another one meanwhile. Nothing was changed."});
    EXPECT_TRUE(Entries() == changed);
    const std::size_t put = left.err.find("'phnctl contacts put ");
    ASSERT_NE(put, std::string::npos) << left.err;
    Expect(0, left.err.substr(put + 8, left.err.find("' writes it") - put - 8), {"    Work: (nothing) -> 5550199\n"});
}

} // namespace
