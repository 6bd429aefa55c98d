#pragma once

#include <QtPlugin>

struct CustomInfo;

/// A dialog that owns or edits a customisation record and lends it to its child windows, which ask
/// qobject_cast<CustomInfoHolder*>(parent()) for it.
class CustomInfoHolder
{
public:
    virtual ~CustomInfoHolder() = default;

    /// The record, not owned by the caller; null while there is none.
    virtual CustomInfo* customInfo() = 0;
};

#define CustomInfoHolder_iid "orvex.CustomInfoHolder"
Q_DECLARE_INTERFACE(CustomInfoHolder, CustomInfoHolder_iid)
