#pragma once

/// What libraries that are preloaded into mox have in common: from main() on they count calls, in mox and in the
/// processes that it forks, and let one of them fail, or one and all that follow it. Counting starts with main(), since
/// a program that can't even be loaded is nothing that a program could handle.
///
/// MOX_TEST_FAILING_CALL is the number of the call, from 1 on; with a "+" after it, all that follow fail too.
/// MOX_TEST_CALLS is a file that gets the count of all calls when the program ends.
namespace Preloaded {

/// To be called once in each call that counts.
bool isToFail();

} // namespace Preloaded
