#pragma once

namespace corrieval {

// "StrictBWW" in the program's settings: when not 0, BWW and BMW tunes are read strictly, as the
// older program read them, instead of in full. Read without writing: a missing value is 0.
bool StrictBwwSetting();

} // namespace corrieval
