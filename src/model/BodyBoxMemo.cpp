#include "model/BodyBoxMemo.h"

#include "history/History.h"
#include "model/Body.h"
#include "model/Face.h"

#include <algorithm>

namespace QRV
{
void BodyBoxMemo::NoteBoxVoid(const Body& body, const Interval3d& box)
{
    m_mapNotes[body.GetID()].oldBox = box;
}

void BodyBoxMemo::NoteFaceLeft(const Body& body, const Interval3d& box)
{
    m_mapNotes[body.GetID()].leftBox += box;
}

void BodyBoxMemo::NoteFaceTouched(const Body& body, const Face& face)
{
    m_mapNotes[body.GetID()].aTouchedFaceIDs.push_back(face.GetID());
}

void BodyBoxMemo::NoteRestructured(const Body& body)
{
    m_mapNotes[body.GetID()].bRestructured = true;
}

bool BodyBoxMemo::TakeBox(const Body& body, History& history, Interval3d& box)
{
    const auto itNotes = m_mapNotes.find(body.GetID());
    if (itNotes == m_mapNotes.end())
        return false;
    const Notes notes = std::move(itNotes->second);
    m_mapNotes.erase(itNotes);
    if (notes.bRestructured || notes.oldBox.isNull())
        return false;

    Interval3d touched;
    for (const std::uint64_t nFaceID : notes.aTouchedFaceIDs)
        if (Face* pFace = history.Get<Face>(nFaceID); pFace && pFace->GetBody() == &body)
            touched += pFace->GetBox();

    // What left within this of a side may have been what held the side: a box that was turned with its body is only
    // about that of its faces.
    const double dSlack =
        kLinearTolerance * std::max({1.0, notes.oldBox.lower.lengthRect(), notes.oldBox.upper.lengthRect()});
    box = notes.oldBox + touched;
    for (int n = 0; n < 3; ++n)
    {
        const bool bLowerInDoubt = notes.leftBox.lower[n] <= notes.oldBox.lower[n] + dSlack;
        const bool bUpperInDoubt = notes.leftBox.upper[n] >= notes.oldBox.upper[n] - dSlack;
        if ((bLowerInDoubt && touched.lower[n] > notes.oldBox.lower[n]) ||
            (bUpperInDoubt && touched.upper[n] < notes.oldBox.upper[n]))
            return false;
    }
    return true;
}
} // namespace QRV
