-- Word frequencies, written against the Haskell 2010 report.
module Main (main) where

import qualified Data.Map.Strict as Map
import Data.Char (isAlpha, toLower)
import Data.List (sortBy)

{- The words of a text, in lower case.
   {- Comments nest. -} -}
wordsOf :: String -> [String]
wordsOf = words . map (\c -> if isAlpha c then toLower c else ' ')

count :: [String] -> Map.Map String Int
count = foldr (\w -> Map.insertWith (+) w 1) Map.empty

main :: IO ()
main = do
  text <- getContents
  let counts = count (wordsOf text)
      top = take 10 (sortBy (\(_, a) (_, b) -> compare b a) (Map.toList counts))
      limit' = 0x10 :: Int
  mapM_ (\(w, n) -> putStrLn (w ++ ": " ++ show n)) top
  print (limit', 'x', "it's \"done\"")
