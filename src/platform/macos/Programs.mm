#include "platform/Programs.h"
#import <AppKit/AppKit.h>

namespace vellum::platform {

namespace {

// The one that the user has chosen, or any other: never this program, which may be chosen itself.
NSURL* otherProgram(NSURL* url) {
  NSWorkspace* workspace = [NSWorkspace sharedWorkspace];
  NSString* ours = [[NSBundle mainBundle] bundleIdentifier];
  NSURL* chosen = [workspace URLForApplicationToOpenURL:url];
  NSArray<NSURL*>* all = [workspace URLsForApplicationsToOpenURL:url];
  for (NSURL* program in chosen == nil ? all : [@[ chosen ] arrayByAddingObjectsFromArray:all]) {
    NSString* name = [[NSBundle bundleWithURL:program] bundleIdentifier];
    if (ours == nil || ![ours isEqualToString:name]) return program;
  }
  return nil;
}

void openIn(NSURL* program, NSURL* url) {
  [[NSWorkspace sharedWorkspace] openURLs:@[ url ]
                     withApplicationAtURL:program
                            configuration:[NSWorkspaceOpenConfiguration configuration]
                        completionHandler:nil];
}

} // namespace

bool openInVlc(const QUrl& url) {
  if (url.scheme() != u"http" && url.scheme() != u"https") return false;
  @autoreleasepool {
    NSWorkspace* workspace = [NSWorkspace sharedWorkspace];
    NSURL* vlc = [workspace URLForApplicationWithBundleIdentifier:@"org.videolan.vlc"];
    NSURL* address = url.toNSURL();
    if (vlc == nil || address == nil) return false;
    openIn(vlc, address);
    return true;
  }
}

bool openWithDesktop(const QString& link) {
  @autoreleasepool {
    const bool isMagnet = link.startsWith(QLatin1String("magnet:"));
    // As text: a QUrl would rewrite some of its escapes.
    NSURL* url = isMagnet ? [NSURL URLWithString:link.toNSString()]
                          : [NSURL fileURLWithPath:link.toNSString()];
    NSURL* program = url == nil ? nil : otherProgram(url);
    if (program == nil) return false;
    openIn(program, url);
    return true;
  }
}

} // namespace vellum::platform
