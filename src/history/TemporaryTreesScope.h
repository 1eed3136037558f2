/// Searches narrowed to a part of the model.
#pragma once

#include "history/History.h"

namespace QRV
{
/// While it lives, the searches of a History see only what lies under one or two objects, and what is made or moved
/// meanwhile. Without objects the trees start empty. Scopes nest, each putting back what it found.
class TemporaryTreesScope
{
public:
    explicit TemporaryTreesScope(History& history, const Object* pFirst = nullptr, const Object* pSecond = nullptr);
    ~TemporaryTreesScope();
    TemporaryTreesScope(const TemporaryTreesScope&) = delete;
    TemporaryTreesScope& operator=(const TemporaryTreesScope&) = delete;

private:
    History& m_history;
    std::optional<TopologyTrees> m_previous;
};
} // namespace QRV
