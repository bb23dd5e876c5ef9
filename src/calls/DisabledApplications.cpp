#include "calls/DisabledApplications.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <iterator>

#include "foundation/TextCase.h"

namespace kestro {
namespace {

// Applications of one identifier a version: the stem and the first and last number behind it.
struct Family {
  std::string_view stem;
  int first;
  int last;
};

constexpr Family families[]{
    {"com.ikmultimedia.AmpliTube", 4, 8},
    {"net.telestream.screenflow", 9, 15},
    {"com.adobe.PremierePro.", 10, 30},
    {"com.adobe.PremiereProBeta.", 10, 30},
    {"com.adobe.ame.application.", 10, 30},
    {"com.techsmith.camtasia", 2018, 2030},
    {"com.techsmith.snagit.capturehelper", 2018, 2030},
    {"com.makemusic.Finale", 20, 30},
};

constexpr std::string_view identifiers[]{
    // System parts, utilities, dictation and assistant tools.
    "com.apple.Spotlight",
    "com.apple.quicklook.QuickLookUIService",
    "com.macility.typinator2",
    "com.guidedways.TodoMac",
    "com.guidedways.TodoMac-setapp",
    "com.apple.dt.Xcode",
    "com.apple.preference.sound.remoteservice",
    "com.apple.preference.security.remoteservice",
    "WSG985FR47.net.telestream.screenflowhelper",
    "net.telestream.screenflowhelper",
    "com.electron.ava.helper",
    "com.stack.io.helper",
    "com.apple.MobileSMS",
    "com.macpaw.CleanMyMac",
    "com.macpaw.CleanMyMac-setapp",
    "com.smileonmymac.textexpander",
    "com.stairways.keyboardmaestro.engine",
    "com.loom.desktop.helper",
    "com.apple.loginwindow",
    "tw.ogdesign.eagle.helper",
    "com.runningwithcrayons.Alfred",
    "com.setapp.DesktopClient",
    "com.parallels.vm",
    "com.apple.Virtualization.VirtualMachine",
    "EKT6323JY3.com.guidedways.TodoMac.Helper",
    "com.descript.beachcube.helper",
    "com.bensoftware.SecuritySpy",
    "com.memoryvault.MemoryVault",
    "ai.limitless.desktop",
    "com.apple.controlcenter",
    "com.pilotmoon.DwellClick",
    "com.henrikruscon.Klack",
    "com.apple.Sound-Settings.extension",
    "com.atebits.Tweetie2",
    "com.3bitlab.AntiSleep",
    "org.python.python",
    "Cisco-Systems.SparkHelper",
    "com.microsoft.teams2.modulehost",
    "com.superduper.superwhisper",
    "com.superduper.superwhisper-setapp",
    "app.intellibar.macos",
    "com.electron.wispr-flow.helper",
    "com.readdle.SparkDesktop",
    "com.readdle.SparkDesktop-setapp",
    "com.goodsnooze.MacWhisper",
    "com.apple.VoiceMemos",
    "com.electron.aqua-voice",
    "com.electron.aqua-voice.helper",
    "com.todesktop.230313mzl4w4u92",
    "com.anthropic.claudefordesktop.helper",
    "com.openai.codex",
    "com.openai.codex.helper",
    "com.clickup.brain",
    "com.granola.app",
    "com.granola.app.helper",
    // Media players and audio tools.
    "com.apple.QuickTimePlayerX",
    "com.colliderli.iina",
    "org.videolan.vlc",
    "com.apple.Music",
    "com.apple.iTunes",
    "com.spotify.client",
    "com.tidal.desktop.player",
    "com.anghami.anghami.helper",
    "com.bearisdriving.BGM.App",
    "com.movist.movist-setapp",
    "com.eltima.elmedia-setapp",
    "pl.growapps.Silenz-setapp",
    "pl.growapps.Silenz",
    "com.globaldelight.Boom3D",
    "com.globaldelight.Boom3DMAS",
    "com.globaldelight.Boom3D-setapp",
    "com.globaldelight.Boom2MAS",
    "com.globaldelight.Boom2",
    "ai.krisp.krispMac",
    "com.rogueamoeba.audiohijack3",
    "com.rogueamoeba.Airfoil",
    "com.rogueamoeba.arkaudiod",
    "com.reincubate.macos.cam",
    "com.elgato.WaveLink",
    "com.staticz.SoundControl",
    "com.roon.Roon",
    // Games.
    "com.blizzard.starcraft2",
    "com.epicgames.EpicWebHelper",
    "com.nvidia.gfnpc.mall",
    "com.vpltd.FlatOut2as",
    "Project Zomboid",
    "org.ultrastardeluxe.ultrastardeluxe",
    // Audio, music and video production.
    "com.apple.logic10",
    "com.ableton.live",
    "com.uaudio.luna",
    "com.cockos.reaper",
    "com.izotope.RX8",
    "com.apple.garageband10",
    "com.apple.mainstage3",
    "com.adobe.Audition",
    "com.apple.FinalCut",
    "com.apple.FinalCutApp",
    "com.apple.FinalCutTrial",
    "com.apple.iMovieApp",
    "com.avid.ProTools",
    "com.adobe.AfterEffects",
    "com.DSP-Q.DSP-Quattro",
    "net.sourceforge.supercollider",
    "com.twistedwave.TwistedWave",
    "com.cycling74.Max",
    "com.celemony.melodyne.standalone",
    "com.ocenaudio",
    "com.thecargocult.envyeditor",
    "org.audacityteam.audacity",
    "com.image-line.flstudio",
    "com.arobas-music.guitarpro6",
    "com.arobas-music.guitarpro7",
    "com.arobas-music.guitarpro8",
    "com.adobe.illustrator",
    "com.serato.seratodj",
    "com.native-instruments.Maschine",
    "com.native-instruments.Maschine 2",
    "com.imaginando.vs",
    "com.blackmagic-design.DaVinciResolve",
    "com.native-instruments.Traktor",
    "com.plugdata.plugdata",
    "com.pomfort.ReeltimePro",
    "com.xlnaudio.addictivedrums2",
    // Screen recorders.
    "com.shinywhitebox.iShowU6",
    "com.shinywhitebox.iShowU-Instant",
    "com.shinywhitebox.iShowU-Studio-2",
    "com.shinywhitebox.SWBAudioApp",
    "com.obsproject.obs-studio",
    "com.timpler.screenstudio.helper",
    "com.getcleanshot.app-setapp",
    "com.loom.desktop",
    "app.mmhmm.hybrid.helper",
};

}  // namespace

std::set<std::string> builtInDisabledApplications() {
  std::set<std::string> applications(std::begin(identifiers), std::end(identifiers));
  for (const Family& family : families) {
    for (int number = family.first; number <= family.last; ++number) {
      applications.insert(fmt::format("{}{}", family.stem, number));
    }
  }
  return applications;
}

bool isNeverInACall(std::string_view bundleIdentifier) {
  constexpr std::array<std::string_view, 2> makers{"com.steinberg", "net.steinberg"};
  const std::string identifier = lowercased(bundleIdentifier);
  return std::ranges::any_of(makers,
                             [&](std::string_view maker) { return identifier.starts_with(maker); });
}

}  // namespace kestro
