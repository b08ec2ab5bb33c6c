#pragma once

namespace kestrum::store {
class OutlineNode;
class TRMData;
} // namespace kestrum::store

namespace kestrum::cli {

// The demo report's word cloud: the words of the coded passages, weighted by how often they
// occur, laid out with a fixed seed so that every demo shows the same cloud.
class DemoCloudPage
{
public:
    static store::OutlineNode* add(store::TRMData& data, store::OutlineNode* parent);
};

} // namespace kestrum::cli
