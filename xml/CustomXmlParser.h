#pragma once

#include "xml/CBasedQtXmlParser.h"
#include "xml/CustomInfo.h"

#include <functional>

/// Writes the customisation document from a record and reads it back, a section at a time.
///
/// Writing: FormatXMLInit, then the Format operations in the order of the sections in the file, then SaveFile. Each
/// Format operation appends one section. Reading: each Get operation loads the file anew and answers 0 when that fails,
/// with the record untouched, otherwise 1. A section that is missing leaves its record alone; an element that is
/// missing from a section that is there reads as 0 or as the empty text. No operation checks values.
class CustomXmlParser : public CBasedQtXmlParser
{
public:
    ~CustomXmlParser() override;

    /// Always 1.
    int FormatXMLInit();
    /// Builds the document without sections.
    void FormatFoundXML();

    void FormatXMLCommonInfo(CommonInfo info);
    void FormatXMLFunctionInfo(BasicFunctionInfo info);
    void FormatXML8021XInfo(X1OptionsInfo info);
    void FormatXMLDomainInfo(SUIDomainInfo& info);
    void FormatXMLPortalInfo(PortalOptionsInfo info);
    void FormatXMLSslVpnInfo(SSLVPNOptionsInfo info);
    void FormatXMLGUIInfo(GUIOptionsInfo info);
    void FormatXMLZOAInfo(ZOAOptionsInfo info);
    void FormatIpseVpnInfo(L2TP_IPSEC_VPN_OptionInfo& info);
    void FormatXMLIPSECVPNRouteInfo(QVector<VPN_RouteInfo>& routes);
    void FormatXMLKefInfo(KEFOptionsInfo info);

    int GetXMLCommonInfo(const QString& path, CommonInfo& info);
    int GetXMLFunctionInfo(const QString& path, BasicFunctionInfo& info);
    int GetXML8021XInfo(const QString& path, X1OptionsInfo& info);
    /// Appends to the list of domains.
    int GetXMLDomainInfo(const QString& path, SUIDomainInfo& info);
    int GetXMLPortalInfo(const QString& path, PortalOptionsInfo& info);
    /// Appends to the list of gateways.
    int GetXMLSslVpnInfo(const QString& path, SSLVPNOptionsInfo& info);
    /// An icon whose flag is set gets as its path the copy beside the document.
    int GetXMLGUIInfo(const QString& path, GUIOptionsInfo& info);
    int GetXMLZOAInfo(const QString& path, ZOAOptionsInfo& info);
    int GetXMLIpseVpnInfo(const QString& path, L2TP_IPSEC_VPN_OptionInfo& info);
    /// Appends to the list of routes.
    int GetXMLIPSECVPNRouteInfo(const QString& path, QVector<VPN_RouteInfo>& routes);
    int GetXMLKefInfo(const QString& path, KEFOptionsInfo& info);

    /// Always 1, also when the file cannot be written.
    int SaveFile(const QString& path);
    /// Whether the last SaveFile wrote the whole document.
    bool isSaved() const { return m_isSaved; }
    /// 0 for an empty path or a file that cannot be loaded; a path equal to the one last given, without regard to
    /// case, is not loaded again.
    int LoadFile(const QString& path);
    void Clear();

    /// Parses a whole document from memory. From then on the Get operations read this document, without loading it
    /// anew, and take from their path nothing but the directory that the icons are said to lie in.
    ///
    /// @param path  the file that the bytes were read from, in the local 8-bit encoding, for the log line of one that
    /// is
    ///              no XML; null when there is none
    /// @return  false when the bytes are no XML within the bounds of the parser, or have no element `content` in
    ///          the root, whose name does not matter; the Get operations then read files again
    bool loadDocument(const QByteArray& bytes, const char* path = nullptr);

private:
    void formatSection(const char* name, const std::function<void()>& addChildren, bool compact = false);
    int getSection(const QString& path, const char* name, const std::function<void()>& readChildren);
    /// Runs `addChildren` with a new child of the current element as the current element.
    void addGroup(const char* name, const std::function<void()>& addChildren);
    /// Runs `readItem` with each child of `list` that bears the name as the current element.
    void forEachItem(const QDomElement& list, const char* name, const std::function<void()>& readItem);

    bool m_documentLoaded = false; // by loadDocument
    bool m_isSaved = false;
    QString m_strFilePath; // the path last given to LoadFile
};
