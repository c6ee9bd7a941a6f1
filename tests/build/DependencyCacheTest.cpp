// What is kept of the dependencies of objects.

#include "build/system/DependencyCache.h"
#include "WorkspaceTestSupport.h"

namespace {

const QStringList Files = {u"a.c"_s, u"a.h"_s, u"caf\u00e9/b.h"_s};

TEST(DependencyCache, HoldsWhileTheObjectHasItsTime)
{
    DependencyCache cache;
    QStringList files;
    cache.insert(u"/o/a.kvo"_s, 5, Files);
    EXPECT_TRUE(cache.find(u"/o/a.kvo"_s, 5, files));
    EXPECT_EQ(files, Files);
    EXPECT_FALSE(cache.find(u"/o/a.kvo"_s, 6, files));
    EXPECT_FALSE(cache.find(u"/o/b.kvo"_s, 5, files));
    cache.remove(u"/o/a.kvo"_s);
    EXPECT_FALSE(cache.find(u"/o/a.kvo"_s, 5, files));
}

TEST(DependencyCache, ComesBackFromItsFileWhole)
{
    const TestFolder folder;
    const QString path = QString::fromStdString(folder / "p.dependencies");
    DependencyCache cache;
    cache.insert(u"/o/a.kvo"_s, 5, Files);
    cache.insert(u"/o/b.kvo"_s, 7, {u"a.h"_s});
    cache.insert(u"/o/other.kvo"_s, 9, {u"x"_s});
    cache.save(path, {u"/o/a.kvo"_s, u"/o/b.kvo"_s, u"/o/gone.kvo"_s});

    DependencyCache again;
    again.insert(u"/o/b.kvo"_s, 8, {u"newer"_s});
    again.load(path);
    QStringList files;
    EXPECT_TRUE(again.find(u"/o/a.kvo"_s, 5, files));
    EXPECT_EQ(files, Files);
    EXPECT_TRUE(again.find(u"/o/b.kvo"_s, 8, files)) << "what is known stays";
    EXPECT_FALSE(again.find(u"/o/other.kvo"_s, 9, files));

    // Any damage is as if there were no file.
    const QByteArray whole = readFile(path);
    for (qsizetype length = 0; length < whole.size(); ++length)
        EXPECT_FALSE(DependencyCache().addBytes(whole.left(length))) << length;
    EXPECT_FALSE(DependencyCache().addBytes(whole + 'x'));
    EXPECT_TRUE(DependencyCache().addBytes(whole));
}

} // namespace
