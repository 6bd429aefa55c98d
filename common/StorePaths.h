#pragma once

/// Names below the directory of the executable, which is the root of the store. Their case matters.
namespace store {

constexpr char custom[] = "custom";             // the customisation just committed, input of the generators
constexpr char updateCustom[] = "UpdateCustom"; // the history, one directory a customisation, named by its time stamp
constexpr char templates[] = "template";        // the client templates of the installation
constexpr char temp[] = "Temp";                 // below template/: scratch directory of one generator run
constexpr char setup[] = "OrvexSetup";          // generated setup packages
constexpr char update[] = "OrvexUpdate";        // generated update packages
constexpr char cusUpdate[] = "OrvexCusUpd";     // generated customised-update packages
constexpr char archiver[] = "7za";

constexpr char document[] = "OrvexCustom.xml";
constexpr char verification[] = "OrvexCustomXml.vrf";
constexpr char linuxDeskIcon[] = "DeskIconLinux.png";
constexpr char macosDeskIcon[] = "DeskIconMacos.icns";
constexpr char mainIcon[] = "MainIcon.ico";
constexpr char comment[] = "comment.txt";

} // namespace store
