// What phnctl writes is its owner's alone, and what a link leads to that somebody has laid in its way stays as it is.
#include "phnctl/handset_run.h"

namespace {

namespace fs = std::filesystem;
using WrittenFiles = HandsetRun;

TEST_F(WrittenFiles, AreTheirOwnersAloneAndFollowNoLink)
{
    // A shell lays it in the way and becomes phnctl. $D is the row's folder, $R that of the journals.
    const struct
    {
        const char *laid, *words;
        int status;
        const char *says, *written;
    } rows[]{
        {"ln -s secret $D/a.vcf", "contacts export $D/a.vcf", 2, "a.vcf exists already", ""},
        {"ln -s secret $D/a.vcf", "contacts export --force $D/a.vcf", 0, "written to", "a.vcf"},
        {"ln $D/secret $D/a.vcf", "contacts export --force $D/a.vcf", 0, "written to", "a.vcf"},
        {"ln -s gone $D/a.vcf", "contacts export $D/a.vcf", 0, "written to", "a.vcf"},
        {"ln -s secret $D/a.vcf.$$.part", "contacts export $D/a.vcf", 0, "written to", "a.vcf"},
        {"mkdir $D/real; ln -s real $D/link", "contacts export --folder $D/link/cards", 0, "", "real/cards"},
        {"mkdir $D/kept; ln -s ../secret $D/kept/calls.json", "backup --force $D/kept", 0, "", "kept/calls.json"},
        {"true", "report $D/fault.zip --yes", 0, "", "fault.zip"},
        {"ln -s gone $D/copy.vcf", "contacts delete --yes 0 --copy $D/copy.vcf", 0, "A copy", "copy.vcf"},
        {"cp -a $R $D; mv $R $R.kept; mkdir $R; ln -s $R.kept/* $R", "undo --yes", 2, "no run to take back", ""},
        {"rm -r $R; mv $R.kept $R; cat $R/*/journal.jsonl >$D/secret; ln -sf $D/secret $R/*/journal.jsonl",
         "undo --yes", 1, "journal.jsonl: Too many levels of symbolic links", ""},
    };
    m_program.Set("XDG_STATE_HOME", Path("state"));
    m_program.Set("R", Path("state/phnnrv/runs"));
    for (const auto& row : rows) {
        const fs::path folder = Path("row" + std::to_string(&row - rows)), secret = folder / "secret";
        SCOPED_TRACE(std::string(row.laid) + " and " + row.words);
        fs::create_directory(folder);
        std::ofstream(secret) << "secret";
        fs::permissions(secret, fs::perms(0644));
        m_program.Set("D", folder.string());
        Expect(row.status, std::string(row.words) + " $(umask 077; " + row.laid + "; cp $D/secret $D/before)",
               {row.says});
        EXPECT_EQ(ReadAll(secret), ReadAll(folder / "before"));
        EXPECT_EQ(fs::status(secret).permissions(), fs::perms(0644));
        EXPECT_FALSE(fs::exists(folder / "gone"));
        EXPECT_TRUE(fs::exists(folder / row.written) && !fs::is_symlink(folder / row.written));
        for (const fs::path& made : fs::recursive_directory_iterator(folder)) {
            const bool isOthers = fs::equivalent(made, secret);
            EXPECT_TRUE(isOthers || (fs::status(made).permissions() & fs::perms(077)) == fs::perms::none) << made;
        }
    }
}

} // namespace
