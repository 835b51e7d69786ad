#include "platform/Programs.h"
#import <AppKit/AppKit.h>

namespace vellum::platform {

bool openInVlc(const QUrl& url) {
  if (url.scheme() != u"http" && url.scheme() != u"https") return false;
  @autoreleasepool {
    NSWorkspace* workspace = [NSWorkspace sharedWorkspace];
    NSURL* vlc = [workspace URLForApplicationWithBundleIdentifier:@"org.videolan.vlc"];
    NSURL* address = url.toNSURL();
    if (vlc == nil || address == nil) return false;
    [workspace openURLs:@[ address ]
        withApplicationAtURL:vlc
               configuration:[NSWorkspaceOpenConfiguration configuration]
           completionHandler:nil];
    return true;
  }
}

bool openWithDesktop(const QString& link) {
  @autoreleasepool {
    const bool isMagnet = link.startsWith(QLatin1String("magnet:"));
    // As text: a QUrl would rewrite some of its escapes.
    NSURL* url = isMagnet ? [NSURL URLWithString:link.toNSString()]
                          : [NSURL fileURLWithPath:link.toNSString()];
    NSWorkspace* workspace = [NSWorkspace sharedWorkspace];
    if (url == nil || [workspace URLForApplicationToOpenURL:url] == nil) return false;
    [workspace openURL:url];
    return true;
  }
}

} // namespace vellum::platform
