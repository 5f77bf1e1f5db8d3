#include <Qel/Base/Saver.h>

#include <gtest/gtest.h>

#include <string>
#include <type_traits>

namespace {

struct Options {
    bool flag = false;
};

class PlainSaver final : public Qel::Base::Saver<int, Options> {
public:
    using Saver::Saver;

    const Qel::Base::SaveTarget& getTarget() const { return target; }
    const Options& getOptions() const { return options; }
};

static_assert(std::is_base_of_v<Qel::Base::Extractor<int, void>, PlainSaver>);

TEST(BaseSaver, HoldsCopiesOfTargetAndOptions) {
    Qel::Base::SaveTarget target{.path = "a.mox", .format = "format"};
    Options options{.flag = true};
    const PlainSaver saver(target, options);
    target.path = "other";
    options.flag = false;
    EXPECT_EQ(saver.getTarget().path, "a.mox");
    EXPECT_EQ(saver.getTarget().format, "format");
    EXPECT_TRUE(saver.getTarget().parameters.empty());
    EXPECT_EQ(saver.getTarget().number, 0U);
    EXPECT_TRUE(saver.getOptions().flag);
}

TEST(BaseSaver, SaveAndExtractDoNothing) {
    PlainSaver saver({.path = "a.mox", .format = "format"}, Options());
    int database = 3;
    saver.extract(database);
    saver.save();
    EXPECT_EQ(database, 3);
}

} // namespace
