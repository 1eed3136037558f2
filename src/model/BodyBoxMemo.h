/// The boxes of bodies whose faces are being changed.
#pragma once

#include <QRV/Geometry.h>
#include <QRV/Ids.h>

#include <map>
#include <vector>

namespace QRV
{
class Body;
class Face;
class History;

/// Lets a body's box follow a change of a few faces without a look at all the others. It keeps, from the moment the
/// box is void until it is asked for again, the old box, the boxes that left and the faces that came or changed: where
/// what left did not reach a side of the old box, or what came reaches as far, that side is known. Lives within one
/// Delta.
class BodyBoxMemo
{
public:
    /// The body's box, not null until now, becomes void.
    void NoteBoxVoid(const Body& body, const Interval3d& box);
    /// A face with a box leaves the body, or its box becomes void.
    void NoteFaceLeft(const Body& body, const Interval3d& box);
    /// A face enters the body, or will have a new box.
    void NoteFaceTouched(const Body& body, const Face& face);
    /// Lumps or shells moved: the next box is made from all faces.
    void NoteRestructured(const Body& body);
    /// The new box from the notes, and forgets them; false when all faces must be looked at.
    bool TakeBox(const Body& body, History& history, Interval3d& box);
    void Clear() noexcept { m_mapNotes.clear(); }

private:
    struct Notes
    {
        Interval3d oldBox;
        Interval3d leftBox;
        std::vector<std::uint64_t> aTouchedFaceIDs;
        bool bRestructured = false;
    };

    std::map<std::uint64_t, Notes> m_mapNotes; ///< by body id
};
} // namespace QRV
