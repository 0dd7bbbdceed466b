/* SPDX-License-Identifier: Apache-2.0 */
#include "view/view.h"

#include <algorithm>

namespace algdata
{

View::View(const Source& source, bool loaded)
    : kind(*source.kind), bytes(source.bytes), stored(kind, source.bytes), again(kind, source.bytes)
{
    if (!loaded)
        return;
    image = loadImage(kind, source.bytes, source.name);
    if (!image->accepted)
        throw Failure(source.name + ": " + kind.reader() + " refuses the file; `algdata check` shows why");
}

bool View::next(Record& record)
{
    if (!image)
        return stored.next(record);
    if (count == image->count)
        return false;
    readAt(count++, record);
    return true;
}

void View::restart()
{
    stored.seek(0);
    count = 0;
}

size_t View::sizeHint() const
{
    return image ? image->count : static_cast<size_t>(std::count(bytes.begin(), bytes.end(), '\n')) + 1;
}

void View::readAt(size_t place, Record& record)
{
    if (image) {
        texts.clear();
        readRecord(*image, place, record, texts);
    } else {
        again.seek(place);
        again.next(record);
    }
}

} // namespace algdata
