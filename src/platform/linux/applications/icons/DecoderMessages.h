#pragma once

namespace amberquill::desktop {

// From the first call on, what Qt's decoders have to say about a broken file (on standard error, where it
// helps nobody) is dropped while a QuietDecoding lives on the thread that says it. All other messages go
// where they went. Not undone.
void quietenDecoders();

class QuietDecoding {
public:
    QuietDecoding();
    QuietDecoding(const QuietDecoding&) = delete;
    QuietDecoding& operator=(const QuietDecoding&) = delete;
    ~QuietDecoding();
};

} // namespace amberquill::desktop
