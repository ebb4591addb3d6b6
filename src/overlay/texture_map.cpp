// SPDX-License-Identifier: MIT
// The texture map that the host's renderer pulls the overlay from: made, replaced, released.
//
// m_mapWrapper is exchanged under m_textureLock; ending a map happens outside of it, since that waits for a refresh,
// and a refresh takes the lock.

#include "callback/py_locks.h"
#include "overlay/frame_source.h"
#include "overlay/orvanel.h"
#include "overlay/texture_lock.h"
#include "platform/fork.h"
#include "support/diag_log.h"
#include "texture/py_map_wrapper.h"

namespace {

/// Waits for a refresh under way and cuts the map off from its owner; a renderer may keep its reference.
void endMap(platform::ComPointer<PyMapWrapper> map) {
    if (!map)
        return;
    map->Stop();
    map->Join(platform::kInfinite);
    map->SetOwner(nullptr);
}

} // namespace

platform::ComPointer<PyMapWrapper> Orvanel::exchangeTextureMap(platform::ComPointer<PyMapWrapper> map) {
    const TextureLockGuard lock(m_textureLock);
    std::swap(m_mapWrapper, map);
    const unsigned madeIn = std::exchange(m_mapMadeIn, platform::forkCount());
    // The renderers of a map from before a fork did not come along, and nobody ends their refreshes: it is left alone.
    if (map && madeIn != platform::forkCount()) {
        map->AddRef();
        map.reset();
    }
    return map;
}

void Orvanel::releaseTextureMap() {
    endMap(exchangeTextureMap({}));
}

int Orvanel::Create(PyObject *windowProvider, PyObject *renderer, IVideoTextureSyncer *syncer) {
    const PyAllowThreads allowThreads;
    UINT width = 0;
    UINT height = 0;
    {
        const TextureLockGuard lock(m_textureLock);
        width = m_displayWidth;
        height = m_displayHeight;
    }
    DiagLogPrint("[Orvanel::Create] New PyMap, size=(%d,%d)", static_cast<int>(width), static_cast<int>(height));
    releaseTextureMap();
    platform::ComPointer<PyMapWrapper> map(new PyMapWrapper);
    map->AddRef();
    const HRESULT result = map->Create(width, height, windowProvider, renderer);
    map->SetOwner(m_frameSource.get());
    map->SetSyncer(syncer);
    // Another thread may have created a map meanwhile; the later one stays.
    endMap(exchangeTextureMap(std::move(map)));
    markEdited();
    return result == 1 ? 1 : 0;
}

platform::ComPointer<PyMapWrapper> Orvanel::currentTextureMap() const {
    const TextureLockGuard lock(m_textureLock);
    if (!m_mapWrapper || m_mapMadeIn != platform::forkCount())
        return {};
    m_mapWrapper->AddRef();
    return platform::ComPointer<PyMapWrapper>(m_mapWrapper.get());
}

loom::IAllocator *Orvanel::GetAllocator() {
    const TextureLockGuard lock(m_textureLock);
    return m_mapWrapper.get();
}

void Orvanel::VideoTextureSyncerClosed() {
    // A refresh that still uses the syncer ends first; whoever holds the interpreter lock must not make it wait.
    const PyAllowThreads allowThreads;
    if (const auto map = currentTextureMap())
        map->SetSyncer(nullptr);
}

void Orvanel::ForceUpdateFrame() {
    markEdited();
    const PyAllowThreads allowThreads;
    if (const auto map = currentTextureMap())
        map->Update();
}
