// A shopping list kept in memory, written against the Objective-C language reference.
#import <Foundation/Foundation.h>
#include <stdio.h>

NS_ASSUME_NONNULL_BEGIN

/** One line of the list: an item and how many of it. */
@interface ListItem : NSObject <NSCopying>
@property (nonatomic, copy) NSString *name;
@property (nonatomic, assign) NSUInteger count;
- (instancetype)initWithName:(NSString *)name count:(NSUInteger)count;
@end

@protocol ListObserver <NSObject>
@optional
- (void)listDidChange:(id)list;
@end

@interface ShoppingList : NSObject {
    NSMutableArray<ListItem *> *_items;
}
@property (nonatomic, weak, nullable) id<ListObserver> observer;
- (void)addItem:(NSString *)name count:(NSUInteger)count;
- (NSString *)summary;
@end

NS_ASSUME_NONNULL_END

@implementation ListItem

- (instancetype)initWithName:(NSString *)name count:(NSUInteger)count {
    if ((self = [super init])) {
        _name = [name copy];
        _count = count;
    }
    return self;
}

- (id)copyWithZone:(NSZone *)zone {
    return [[ListItem allocWithZone:zone] initWithName:self.name count:self.count];
}

@end

@implementation ShoppingList

- (instancetype)init {
    self = [super init];
    if (self) {
        _items = [NSMutableArray array];
    }
    return self;
}

/* Adds an item, or raises the count of one already there. */
- (void)addItem:(NSString *)name count:(NSUInteger)count {
    for (ListItem *item in _items) {
        if ([item.name caseInsensitiveCompare:name] == NSOrderedSame) {
            item.count += count;
            [self.observer listDidChange:self];
            return;
        }
    }
    [_items addObject:[[ListItem alloc] initWithName:name count:count]];
    if ([self.observer respondsToSelector:@selector(listDidChange:)]) {
        [self.observer listDidChange:self];
    }
}

- (NSString *)summary {
    NSMutableString *text = [NSMutableString stringWithString:@"List:\n"];
    for (ListItem *item in _items) {
        [text appendFormat:@"  %-12@ x%lu\n", item.name, (unsigned long)item.count];
    }
    return text;
}

@end

int main(int argc, const char *argv[]) {
    @autoreleasepool {
        ShoppingList *list = [[ShoppingList alloc] init];
        [list addItem:@"apples" count:3];
        [list addItem:@"Apples" count:0x2];
        [list addItem:@"bread \"rye\"" count:1];
        NSDictionary *prices = @{@"apples" : @0.5, @"bread" : @2.25};
        NSArray *names = @[ @"apples", @"bread" ];
        @try {
            NSLog(@"%@ %@ %@", [list summary], prices, names);
        } @catch (NSException *e) {
            fprintf(stderr, "failed: %s\n", e.reason.UTF8String);
            return 1;
        }
        char sep = ',';
        printf("%c done\n", sep);
    }
    return 0;
}
